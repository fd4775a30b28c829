// A scripted ECU on a FakeTransport: answers the init bytes with a chosen
// handshake reply and each request (the bytes up to CmdGo) with chosen bytes.
#pragma once

#include "consult/fake_transport.h"

#include <QByteArray>
#include <QMap>

class FakeEcu {
public:
    explicit FakeEcu(FakeTransport& t)
    {
        t.setResponder([this](FakeTransport& tr, const QByteArray& bytes) { onWrite(tr, bytes); });
    }

    QByteArray handshakeReply = QByteArray(1, char(0x10));
    bool silent = false;
    QMap<QByteArray, QByteArray> replies;  // request without CmdGo -> reply bytes
    int requests = 0;

private:
    void onWrite(FakeTransport& t, const QByteArray& bytes)
    {
        for (char c : bytes) {
            const auto b = static_cast<unsigned char>(c);
            if (b == 0x30) {
                pending_.clear();
                continue;
            }
            pending_.append(c);
            if (pending_.endsWith(QByteArray::fromHex("ffffef"))) {
                pending_.clear();
                if (!silent)
                    t.arrive(handshakeReply);
            } else if (b == 0xF0) {
                const QByteArray request = pending_.left(pending_.size() - 1);
                pending_.clear();
                ++requests;
                if (!silent && replies.contains(request))
                    t.arrive(replies.value(request));
            }
        }
    }

    QByteArray pending_;
};

// The reply of a part number read whose five characters are `five`.
inline QByteArray partNumberReply(const QByteArray& five)
{
    QByteArray r(26, '\0');
    r[0] = char(0x2F);
    r[1] = char(0xFF);
    r[2] = char(22);
    for (int i = 0; i < 5; ++i)
        r[20 + i] = five.at(i);
    return r;
}

// The reply of the K value read with the two bytes at 0xFF2B and 0xFF2C.
inline QByteArray kValueReply(int high, int low)
{
    QByteArray r = QByteArray::fromHex("36ff2b36ff2cff02");
    r.append(char(high));
    r.append(char(low));
    return r;
}
