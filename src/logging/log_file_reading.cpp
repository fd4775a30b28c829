#include "logging/log_file_reading.h"

#include <vector>

namespace vexorin::logging {

qint64 feedLog(QFile& file, LogFrameReader& reader, qint64 limit, QString* error)
{
    std::vector<char> buffer(1024 * 1024);
    qint64 done = 0;
    while (limit < 0 || done < limit) {
        const qint64 got = file.read(buffer.data(), qint64(buffer.size()));
        if (got < 0) {
            *error = file.errorString();
            return -1;
        }
        if (got == 0)
            break;
        reader.feed(buffer.data(), std::size_t(got));
        done += got;
    }
    if (file.atEnd())
        reader.finish();
    return done;
}

}  // namespace vexorin::logging
