#include "dlog/journal/Journal.h"

#include "dlog/Descriptor.h"

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

namespace WatchPort
{

namespace
{
constexpr sockaddr_un kJournal = {AF_UNIX, "/run/systemd/journal/socket"};

bool WriteEntry(int file, std::string_view entry)
{
    while (!entry.empty())
    {
        const ssize_t written = write(file, entry.data(), entry.size());
        if (written <= 0)
            return false;
        entry.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool SendDescriptor(int socket, int file)
{
    sockaddr_un address = kJournal;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof file)] = {};
    msghdr message = {};
    message.msg_name = &address;
    message.msg_namelen = sizeof address;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr* head = CMSG_FIRSTHDR(&message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof file);
    std::memcpy(CMSG_DATA(head), &file, sizeof file);
    return sendmsg(socket, &message, MSG_NOSIGNAL) == 0;
}

// The journal reads only files that nobody can change any more.
bool SendAsFile(int socket, std::string_view entry)
{
    constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    const Descriptor file(memfd_create("log-entry", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    return file.Get() >= 0 && WriteEntry(file.Get(), entry) &&
           fcntl(file.Get(), F_ADD_SEALS, kSeals) == 0 && SendDescriptor(socket, file.Get());
}
} // namespace

bool IsJournalStream(const struct statx& stream)
{
    const char* named = std::getenv("JOURNAL_STREAM");
    if (!named)
        return false;
    const std::uintmax_t device = makedev(stream.stx_dev_major, stream.stx_dev_minor);
    const std::uintmax_t inode = stream.stx_ino;
    char name[64];
    std::snprintf(name, sizeof name, "%" PRIuMAX ":%" PRIuMAX, device, inode);
    return std::strcmp(name, named) == 0;
}

bool SendToJournal(std::string_view entry)
{
    const Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (sendto(socket.Get(), entry.data(), entry.size(), MSG_NOSIGNAL,
               reinterpret_cast<const sockaddr*>(&kJournal), sizeof kJournal) >= 0)
        return true;
    return (errno == EMSGSIZE || errno == ENOBUFS) && SendAsFile(socket.Get(), entry);
}

} // namespace WatchPort
