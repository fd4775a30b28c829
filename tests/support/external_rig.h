// An External Gauge Monitor's controller on a temporary store, with its own
// status panels and speech recorder, a list of named devices and a test
// double behind every port number. The double answers each request letter
// with `answer(letter)` unless told otherwise.
#pragma once

#include "consult/fake_transport.h"
#include "external/external_sensors.h"
#include "named_devices.h"
#include "temp_settings.h"
#include "ui/status_panels.h"
#include "voice/recording_speech_out.h"
#include "voice/voice_gate.h"

#include <QPointer>
#include <functional>
#include <memory>

struct ExternalRig {
    explicit ExternalRig(const QStringList& devices = {QStringLiteral("USB  Serial Port (COM3)")})
        : voice(speech), devices_(devices)
    {
    }
    // Builds the controller (settings written before this count) without loading it.
    ExternalSensors& make()
    {
        owned = std::make_unique<ExternalSensors>(
            *settings.store, panels, voice, namedDevices(devices_), [this](int port, QString* error) -> SerialTransport* {
                openedPorts.append(port);
                if (!openError.isEmpty()) {
                    *error = openError;
                    return nullptr;
                }
                transport = new FakeTransport;
                transport->setResponder([this](FakeTransport& t, const QByteArray& bytes) {
                    if (answer)
                        t.arrive(answer(bytes.at(0)));
                });
                return transport;
            });
        sensors = owned.get();
        QObject::connect(sensors, &ExternalSensors::message, [this](const QString& m) { messages.append(m); });
        QObject::connect(sensors, &ExternalSensors::errorBox,
                         [this](const QString& m, const QString& title) { errors.append(title + ": " + m); });
        return *sensors;
    }
    // Built for a window, which takes it over.
    ExternalSensors* forWindow()
    {
        make();
        return owned.release();
    }
    ExternalSensors& load()
    {
        make().Load();
        return *sensors;
    }
    void setting(const QString& section, const QString& value)
    {
        settings.store->WriteSetting(section, QStringLiteral("Setting"), value);
    }
    QString setting(const QString& section) const
    {
        return settings.store->ReadSetting(section, QStringLiteral("Setting"));
    }
    // One whole round of the eight channels, ticked by hand.
    void round()
    {
        for (int i = 0; i < 8; ++i) {
            sensors->link().ChannelRequestTimerTick();
            sensors->link().ChannelReplyTimerTick();
        }
    }

    TempSettings settings;
    StatusPanels panels;
    RecordingSpeechOut speech;
    VoiceGate voice;
    std::unique_ptr<ExternalSensors> owned;
    ExternalSensors* sensors = nullptr;
    QPointer<FakeTransport> transport;
    QString openError;
    QList<int> openedPorts;
    QStringList messages;
    QStringList errors;
    // The reply to a request letter; a reading such as "2.34V" by default.
    std::function<QByteArray(char letter)> answer = [](char letter) {
        return QByteArray::number(double(QByteArrayView("ZXCVBNM,").indexOf(letter) + 1) * 0.5, 'f', 2) + 'V';
    };

private:
    QStringList devices_;
};
