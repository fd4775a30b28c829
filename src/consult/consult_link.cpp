#include "consult/consult_link.h"

#include "consult/serial_transport.h"

ConsultLink::ConsultLink(TransportFactory factory, QObject* parent)
    : QObject(parent), factory_(std::move(factory))
{
}

ConsultLink::~ConsultLink()
{
    if (transport_) {
        transport_->close();
        delete transport_;
    }
}

void ConsultLink::setCommPort(int port)
{
    if (PortOpen())
        return;
    commPort_ = port;
}

bool ConsultLink::PortOpen() const
{
    return transport_ && transport_->isOpen();
}

bool ConsultLink::setPortOpen(bool open, QString* error)
{
    if (open == PortOpen())
        return true;
    if (!open) {
        transport_->close();
        transport_->deleteLater();
        transport_ = nullptr;
        signalled_ = 0;
        return true;
    }
    if (transport_) {
        transport_->deleteLater();
        transport_ = nullptr;
    }
    SerialTransport* t = openTransport(factory_, commPort_, error);
    if (!t)
        return false;
    transport_ = t;
    t->setParent(this);
    t->setDtr(dtr_);
    signalled_ = 0;
    connect(t, &SerialTransport::readyRead, this, &ConsultLink::onReadyRead);
    connect(
        t, &SerialTransport::lost, this,
        [this, t](const QString& reason) {
            if (transport_ != t)
                return;
            t->close();
            t->deleteLater();
            transport_ = nullptr;
            signalled_ = 0;
            emit portLost(reason);
        },
        Qt::QueuedConnection);
    return true;
}

int ConsultLink::InBufferCount()
{
    return PortOpen() ? int(qMin<qint64>(transport_->bytesAvailable(), 32767)) : 0;
}

void ConsultLink::setInBufferCount(int count)
{
    if (count == 0 && PortOpen()) {
        transport_->clear();
        signalled_ = 0;
    }
}

void ConsultLink::Output(const QByteArray& bytes)
{
    if (PortOpen())
        transport_->write(bytes);
}

void ConsultLink::Output(std::initializer_list<int> bytes)
{
    for (int b : bytes)
        Output(QByteArray(1, char(b & 0xFF)));
}

QByteArray ConsultLink::Input()
{
    if (!PortOpen())
        return QByteArray();
    signalled_ = 0;
    return transport_->readAll();
}

void ConsultLink::setDTREnable(bool on)
{
    dtr_ = on;
    if (transport_)
        transport_->setDtr(on);
}

bool ConsultLink::poll(int count)
{
    return PortOpen() && transport_->poll(count);
}

void ConsultLink::noteTimeout(int count)
{
    if (PortOpen())
        transport_->timedOut(count);
}

void ConsultLink::onReadyRead()
{
    if (!PortOpen())
        return;
    const qint64 waiting = transport_->bytesAvailable();
    if (waiting < signalled_)
        signalled_ = 0;
    const qint64 fresh = waiting - signalled_;
    signalled_ = waiting;
    emit bytesArrived();
    if (rThreshold_ != 1 || !PortOpen())
        return;
    for (qint64 i = 0; i < fresh; ++i)
        emit OnComm();
}
