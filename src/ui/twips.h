// Sizes and places of the design are in twips, 15 to a pixel at 100 %.
#pragma once

namespace vexorin::ui {

constexpr int kTwipsPerPixel = 15;
constexpr int px(int twips) { return twips / kTwipsPerPixel; }
constexpr int twips(int pixels) { return pixels * kTwipsPerPixel; }

}  // namespace vexorin::ui
