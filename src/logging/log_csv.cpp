#include "logging/log_csv.h"

namespace vexorin::logging {

const char* const kCsvHeader =
    "time,speed_mph,rpm,tps_v,maf_v,o2_left_v,o2_right_v,inj_ms,timing_deg,iacv_pct,water_f,fuel_f,battery_v,af_alpha";
const char* const kCsvLineEnd = "\n";

void appendCsvRow(const LogFrame& frame, std::string& out)
{
    out += isoText(frame.stamp);
    for (const std::string& v : frame.values) {
        out += ',';
        out += v;
    }
    out += kCsvLineEnd;
}

}  // namespace vexorin::logging
