// Reading and clearing the ECU's stored fault codes, and the table of the
// codes this ECU family reports.
#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

class ConsultSession;

struct FaultCode {
    std::uint8_t byte;    // the ECU's value; its hexadecimal digits are the code of the service manuals
    const char* list;     // FaultCodeList text
    const char* log;      // session log line
    const char* spoken;
    const char* help;     // the Fault Codes window's line
};

extern const std::array<FaultCode, 18> kFaultCodes;

namespace vexorin::consult {
class ReplyBuffer;

// The fault bytes of a reply, read from position 1 (the length byte: the echo
// and the frame start lie before it) up to the next frame start.
struct FaultScan {
    std::vector<int> bytes;          // each position's byte, in order, before any frame start
    bool endedAtFrameStart = false;  // a frame start (255) ended the data
};
FaultScan scanFaultReply(const ReplyBuffer& reply);

// The table's entry of a fault byte, or null for a byte it does not know.
const FaultCode* findFaultCode(int byte);
}  // namespace vexorin::consult

class FaultCodes : public QObject {
    Q_OBJECT
public:
    explicit FaultCodes(ConsultSession& session, QObject* parent = nullptr);

    // The hidden text box of spoken sentences, written like the session log.
    QString FaultCodeResponse() const { return response_; }

    // "Get Fault Codes" and "Clear Fault Codes".
    void GetFaultCodes();
    void ReadFaultCodes();
    void ClearFaultCodes();

private:
    // The two refusals both buttons share, with their message.
    bool refused();
    void showFaults(const std::vector<std::uint8_t>& reply);

    ConsultSession& session_;
    QString response_;
};
