#pragma once

namespace platform {

// Property of the application object by which libViewComponent tells libNetCommon where the canvas lies: a QRect in the
// screen's logical coordinates, set when the canvas is placed or moved. libNetCommon cuts screenshots to it. Without
// libViewComponent the property is absent, and the whole 1280 x 720 area counts. GUI thread only.
inline constexpr char canvasProperty[] = "velmoraCanvas";

} // namespace platform
