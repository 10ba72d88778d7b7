// Whether SDL_gfx is asked for a filter, and an SDL_gfx that answers otherwise.
#pragma once

namespace larkspur::pixel {

/// Number of calls of SDL_imageFilterAdd() and SDL_imageFilterSubUint() in this program; the linker
/// has them counted.
extern int filters_by_gfx;

/// How it answers: as it does, or like a build of SDL_gfx that leaves another last byte behind,
/// always or only of fewer than 200 bytes, or that knows another result for a single pair of bytes,
/// 200 added to 3 and 2 taken from 7.
enum class AnswerOfGfx { kTrue, kOtherLastByte, kOtherLastByteOfFew, kOtherPair };
extern AnswerOfGfx answer_of_gfx;

}  // namespace larkspur::pixel
