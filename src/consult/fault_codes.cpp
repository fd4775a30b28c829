#include "consult/fault_codes.h"

#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "consult/session_outputs.h"
#include "consult/wire.h"

using namespace vexorin::consult;

// In test order.
const std::array<FaultCode, 18> kFaultCodes{{
    {0x11, " 11 ", ": Code 11, Crank Angle Sensor Circuit.", "Code 11, crank angle sensor circuit.", "Code 11 - Crank Angle Sensor Circuit."},
    {0x12, " 12 ", ": Code 12, Air Flow Meter Circuit.", "Code 12, air flow meter circuit.", "Code 12 - Air Flow Meter Circuit."},
    {0x13, " 13 ", ": Code 13, Engine Temperature Sensor Circuit.", "Code 13, engine temperature sensor circuit.", "Code 13 - Engine Temperature Sensor Circuit."},
    {0x14, " 14 ", ": Code 14, Vehicle Speed Sensor Circuit.", "Code 14, vehicle speed sensor circuit.", "Code 14 - Vehicle Speed Sensor Circuit."},
    {0x21, " 21 ", ": Code 21, Ignition Signal Circuit.", "Code 21, ignition signal circuit.", "Code 21 - Ignition Signal Circuit."},
    {0x26, " 26 ", ": Code 26, Boost Pressure Sensor Circuit.", "Code 26, boost pressure sensor circuit.", "Code 26 - Boost Pressure Sensor Circuit."},
    {0x31, " 31 ", ": Code 31, E.C.U.", "Code 31, E C U.", "Code 31 - E.C.U."},
    {0x32, " 32 ", ": Code 32, E.G.R. Function.", "Code 32, E G R  function.", "Code 32 - E.G.R. Function."},
    {0x33, " 33 ", ": Code 33, Exhaust Gas Sensor Circuit (Left Side).", "Code 33, exhaust gas sensor circuit, left side.", "Code 33 - Exhaust Gas Sensor Circuit (Left Side)."},
    {0x34, " 34 ", ": Code 34, Detonation Sensor Circuit.", "Code 34, detonation sensor circuit.", "Code 34 - Detonation Sensor Circuit."},
    {0x35, " 35 ", ": Code 35, Exhaust Gas Temperature Sensor Circuit.", "Code 35, exhaust gas temperature sensor circuit.", "Code 35 - Exhaust Gas Temperature Sensor Circuit."},
    {0x42, " 42 ", ": Code 42, Fuel Temperature Sensor Circuit.", "Code 42, fuel temperature sensor circuit.", "Code 42 - Fuel Temperature Sensor Circuit."},
    {0x43, " 43 ", ": Code 43, Throttle Sensor Circuit.", "Code 43, throttle sensor circuit.", "Code 43 - Throttle Sensor Circuit."},
    {0x45, " 45 ", ": Code 45, Injector Leak.", "Code 45, injector leak.", "Code 45 - Injector Leak."},
    {0x51, " 51 ", ": Code 51, Injector Circuit.", "Code 51, injector circuit.", "Code 51 - Injector Circuit."},
    {0x53, " 53 ", ": Code 53, Exhaust Gas Sensor Circuit (Right Side).", "Code 53, exhaust gas sensor circuit, right side.", "Code 53 - Exhaust Gas Sensor Circuit (Right Side)."},
    {0x54, " 54 ", ": Code 54, Signal Circuit from A/T Control Unit to E.C.U. (A/T only).", "Code 54, signal circuit from automatic transmission control Unit to E C U.", "Code 54 - Signal Circuit from A/T Control Unit to E.C.U. (A/T only)."},
    {0x55, " 55 ", ": Code 55, No Problems Found.", "Code 55, No problems found.", "Code 55 - No Problems Found."},
}};

FaultCodes::FaultCodes(ConsultSession& session, QObject* parent)
    : QObject(parent), session_(session)
{
}

bool FaultCodes::refused()
{
    return session_.refuses(LinkOwner::Connected | LinkOwner::MonitoringOff);
}

void FaultCodes::GetFaultCodes()
{
    session_.owner().whenFree(this, [this] {
        if (refused())
            return;
        session_.setFaultCodeList(QString());
        response_.clear();
        session_.log().AddLogMessage(QStringLiteral(": Requesting fault codes."));
        session_.outputs().status(3, QStringLiteral("Requesting Fault Codes"));
        ReadFaultCodes();
    });
}

void FaultCodes::ReadFaultCodes()
{
    session_.owner().run(faultCodesCycle(), this, [this](const LinkOwner::Reply& reply) {
        if (!reply) {
            session_.log().AddLogMessage(timeoutMessage());
            return;
        }
        showFaults(*reply);
    });
}

void FaultCodes::showFaults(const Bytes& reply)
{
    const FaultScan scan = scanFaultReply(ReplyBuffer(reply, kFaultCodesReplyLength, 2));
    for (int byte : scan.bytes) {
        if (const FaultCode* code = findFaultCode(byte)) {
            session_.setFaultCodeList(session_.FaultCodeList() + QLatin1String(code->list));
            session_.log().AddLogMessage(QLatin1String(code->log));
            response_ += QStringLiteral("\r\n") + QLatin1String(code->spoken) + QStringLiteral("\r\n");
        }
        session_.outputs().say(response_);  // after every position, the sentences so far
    }
    if (scan.endedAtFrameStart)
        StopData(session_.link());
}

namespace vexorin::consult {

FaultScan scanFaultReply(const ReplyBuffer& reply)
{
    FaultScan scan;
    for (int i = 1; i <= kFaultCodesReplyLength; ++i) {
        const int byte = reply(i);
        if (byte == FrameStart) {
            scan.endedAtFrameStart = true;
            break;
        }
        scan.bytes.push_back(byte);
    }
    return scan;
}

const FaultCode* findFaultCode(int byte)
{
    for (const FaultCode& code : kFaultCodes)
        if (code.byte == byte)
            return &code;
    return nullptr;
}

}  // namespace vexorin::consult

void FaultCodes::ClearFaultCodes()
{
    session_.owner().whenFree(this, [this] {
        if (refused())
            return;
        session_.setFaultCodeList(QString());
        session_.log().AddLogMessage(QStringLiteral(": Sending request to clear fault codes."));
        session_.log().AddLogMessage(QStringLiteral(": Fault codes successfully cleared."));
        session_.outputs().say(QStringLiteral("Fault codes successfully cleared."));
        session_.outputs().status(3, QStringLiteral("Fault Codes Cleared"));
        sendBytes(session_.link(), {CmdStop, CmdStop, CmdClearFaults, CmdGo});
    });
}
