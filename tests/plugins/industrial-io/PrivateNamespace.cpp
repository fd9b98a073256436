// SPDX-License-Identifier: GPL-3.0-or-later
#include "PrivateNamespace.h"

#include <QByteArray>

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <linux/capability.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool writeTo(const char* path, const QByteArray& text)
{
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    const bool isWritten =
        file >= 0 && write(file, text.constData(), static_cast<size_t>(text.size())) == text.size();
    if (file >= 0)
        close(file);
    return isWritten;
}

bool becomeRoot(uid_t user, gid_t group)
{
    return writeTo("/proc/self/setgroups", "deny") &&
           writeTo("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1") &&
           writeTo("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1");
}

// A few devices, over the place of all others.
bool coverDev()
{
    char folder[] = "/tmp/kestrix-dev-XXXXXX";
    if (!mkdtemp(folder) || mount("tmpfs", folder, "tmpfs", 0, "mode=0755") != 0)
        return false;
    for (const char* name : {"null", "zero", "random", "urandom"}) {
        const QByteArray place = QByteArray(folder) + '/' + name;
        const int file = open(place.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        if (file < 0)
            return false;
        close(file);
        if (mount((QByteArray("/dev/") + name).constData(), place.constData(), nullptr, MS_BIND, nullptr) !=
            0)
            return false;
    }
    const QByteArray shared = QByteArray(folder) + "/shm";
    const bool isCovered = mkdir(shared.constData(), 01777) == 0 &&
                           symlink("/proc/self/fd", (QByteArray(folder) + "/fd").constData()) == 0 &&
                           mount(folder, "/dev", nullptr, MS_BIND | MS_REC, nullptr) == 0;
    umount2(folder, MNT_DETACH);
    rmdir(folder);
    return isCovered;
}

bool raiseLoopback()
{
    const int any = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool isUp = any >= 0 && ioctl(any, SIOCSIFFLAGS, &request) == 0;
    if (any >= 0)
        close(any);
    return isUp;
}

} // namespace

QString enterPrivateNamespace()
{
    const uid_t user = geteuid();
    const gid_t group = getegid();
    const auto refused = [](const char* what) {
        return QStringLiteral("%1: %2").arg(QString::fromLatin1(what),
                                            QString::fromLocal8Bit(std::strerror(errno)));
    };
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWNET) != 0)
        return refused("user namespaces are off");
    if (!becomeRoot(user, group))
        return refused("no root in a user namespace");
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", "/sys/bus", "tmpfs", 0, nullptr) != 0 || !coverDev())
        return refused("no mounts in a user namespace");
    if (!raiseLoopback())
        return refused("no loopback in a network namespace");
    return {};
}

void WithoutOverride::set(bool isOn)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> data{};
    if (syscall(SYS_capget, &header, data.data()) != 0)
        return;
    constexpr unsigned kOverride = 1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH;
    data[0].effective =
        isOn ? data[0].effective | (data[0].permitted & kOverride) : data[0].effective & ~kOverride;
    syscall(SYS_capset, &header, data.data());
}
