// Reading and clearing the ECU's stored fault codes, and the table of the
// codes this ECU family reports.
#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <cstdint>

class ConsultSession;

struct FaultCode {
    std::uint8_t byte;    // the ECU's value; its hexadecimal digits are the code of the service manuals
    const char* list;     // FaultCodeList text
    const char* log;      // session log line
    const char* spoken;
    const char* help;     // the Fault Codes window's line
};

extern const std::array<FaultCode, 18> kFaultCodes;

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

    ConsultSession& session_;
    QString response_;
};
