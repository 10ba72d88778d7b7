// Scale and position of the view being drawn, shared by room drawing and rectangles.
#pragma once

namespace larkspur {

/// A factor or a position per axis.
struct AxisPair {
    double x;
    double y;
};

/// Scale of the view being drawn or drawn last, port size over view size. Written by native callers
/// too, so it lives in the exported variables.
AxisPair view_scale() noexcept;
void set_view_scale(AxisPair scale) noexcept;

/// Position in the room of the view being drawn or drawn last, pixels; 0 before the first view and
/// after a frame without views.
AxisPair view_offset() noexcept;
void set_view_offset(AxisPair offset) noexcept;

}  // namespace larkspur
