#include "sim/pty_link.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace vexorin::sim {

namespace {

bool fail(std::string* error, const std::string& what)
{
    if (error)
        *error = what + ": " + std::strerror(errno);
    return false;
}

}  // namespace

bool setRawSerialMode(int fd, std::string* error)
{
    termios t{};
    if (::tcgetattr(fd, &t) != 0)
        return fail(error, "tcgetattr");
    ::cfmakeraw(&t);
    t.c_cflag &= ~tcflag_t(CSTOPB | PARENB | CRTSCTS | CSIZE);
    t.c_cflag |= CS8 | CLOCAL | CREAD;
    t.c_iflag &= ~tcflag_t(IXON | IXOFF | IXANY);
    t.c_cc[VMIN] = 1;
    t.c_cc[VTIME] = 0;
    ::cfsetispeed(&t, B9600);
    ::cfsetospeed(&t, B9600);
    if (::tcsetattr(fd, TCSANOW, &t) != 0)
        return fail(error, "tcsetattr");
    return true;
}

PtyLink::~PtyLink()
{
    close();
}

bool PtyLink::open(std::string* error)
{
    close();
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master_ < 0)
        return fail(error, "posix_openpt");
    if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
        const bool r = fail(error, "grantpt/unlockpt");
        close();
        return r;
    }
    char name[256] = {};
    if (::ptsname_r(master_, name, sizeof name) != 0) {
        const bool r = fail(error, "ptsname");
        close();
        return r;
    }
    path_ = name;
    slave_ = ::open(name, O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (slave_ < 0) {
        const bool r = fail(error, std::string("open ") + name);
        close();
        return r;
    }
    // No echo, no line editing, no CR/LF translation, no XON/XOFF: every byte passes as it is.
    if (!setRawSerialMode(slave_, error) || !setRawSerialMode(master_, error)) {
        close();
        return false;
    }
    const int flags = ::fcntl(master_, F_GETFL);
    if (flags < 0 || ::fcntl(master_, F_SETFL, flags | O_NONBLOCK) != 0) {
        const bool r = fail(error, "fcntl");
        close();
        return r;
    }
    return true;
}

void PtyLink::close()
{
    if (slave_ >= 0)
        ::close(slave_);
    if (master_ >= 0)
        ::close(master_);
    slave_ = -1;
    master_ = -1;
    path_.clear();
}

std::size_t PtyLink::queuedForPeer() const
{
    int n = 0;
    if (slave_ < 0 || ::ioctl(slave_, FIONREAD, &n) != 0 || n < 0)
        return 0;
    return std::size_t(n);
}

long PtyLink::read(std::uint8_t* buf, std::size_t n)
{
    if (master_ < 0)
        return -1;
    const ssize_t r = ::read(master_, buf, n);
    if (r >= 0)
        return long(r);
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)
        return 0;
    return -1;
}

std::size_t PtyLink::write(const std::uint8_t* buf, std::size_t n)
{
    if (master_ < 0 || n == 0)
        return 0;
    const ssize_t r = ::write(master_, buf, n);
    return r > 0 ? std::size_t(r) : 0;
}

bool createLink(const std::string& link, const std::string& target, std::string* error)
{
    struct stat st{};
    if (::lstat(link.c_str(), &st) == 0) {
        if (!S_ISLNK(st.st_mode)) {
            if (error)
                *error = link + " exists and is not a symbolic link";
            return false;
        }
        if (::unlink(link.c_str()) != 0)
            return fail(error, "unlink " + link);
    }
    if (::symlink(target.c_str(), link.c_str()) != 0)
        return fail(error, "symlink " + link);
    return true;
}

void removeLink(const std::string& link, const std::string& target)
{
    char buf[4096];
    const ssize_t n = ::readlink(link.c_str(), buf, sizeof buf - 1);
    if (n < 0)
        return;
    buf[n] = '\0';
    if (target == buf)
        ::unlink(link.c_str());
}

}  // namespace vexorin::sim
