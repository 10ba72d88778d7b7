// Whether SDL is asked for a blit, and an SDL that answers otherwise.
#pragma once

namespace larkspur::pixel {

/// Number of calls of SDL_UpperBlit() in this program; the linker has them counted.
extern int blits_by_sdl;

/// How it answers: as it does, or like a build of SDL that leaves another pixel behind, always or
/// only of sources that blend by another alpha than 100, or another rectangle, or one that refuses.
enum class AnswerOfSdl { kTrue, kOtherPixel, kOtherPixelOfOtherAlpha, kOtherRectangle, kRefusal };
extern AnswerOfSdl answer_of_sdl;

}  // namespace larkspur::pixel
