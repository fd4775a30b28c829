// The pictures of the ECU tools, drawn by the program: the Downloader's
// twenty-three spinner pictures and its background, and the Active Test's
// firing and resting spark plug.
#pragma once

#include <QImage>

namespace vexorin::tools {

constexpr int kDownloaderPictures = 23;

// Picture 1 to 23 of the Downloader's spinner.
QImage downloaderPicture(int index, int size = 96);
// The Downloader's background picture.
QImage downloaderBackground(int width, int height);
// A spark plug; `firing` adds the spark across its gap.
QImage sparkPicture(bool firing, int width = 48, int height = 96);

}  // namespace vexorin::tools
