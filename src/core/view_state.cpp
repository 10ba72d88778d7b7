#include "core/view_state.h"

#include "larkspur.h"

extern "C" {
double g_view_xscale = 0.0;
double g_view_yscale = 0.0;
}

namespace larkspur {
namespace {

AxisPair current_offset = {0.0, 0.0};

}  // namespace

AxisPair view_scale() noexcept {
    return {g_view_xscale, g_view_yscale};
}

void set_view_scale(AxisPair scale) noexcept {
    g_view_xscale = scale.x;
    g_view_yscale = scale.y;
}

AxisPair view_offset() noexcept {
    return current_offset;
}

void set_view_offset(AxisPair offset) noexcept {
    current_offset = offset;
}

}  // namespace larkspur
