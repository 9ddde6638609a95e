#include "mount_nfs/protocol/Nfs4.h"

#include <cerrno>

namespace harbrix::nfs {

namespace {

struct Entry {
    Status status;
    int error;
    const char* name;
};

// Statuses that are missing here are faults of the dialogue itself; they become EIO.
constexpr Entry table[] = {
    {Status::Ok, 0, "NFS4_OK"},
    {Status::Perm, EPERM, "NFS4ERR_PERM"},
    {Status::NoEnt, ENOENT, "NFS4ERR_NOENT"},
    {Status::Io, EIO, "NFS4ERR_IO"},
    {Status::NxIo, ENXIO, "NFS4ERR_NXIO"},
    {Status::Access, EACCES, "NFS4ERR_ACCESS"},
    {Status::Exist, EEXIST, "NFS4ERR_EXIST"},
    {Status::XDev, EXDEV, "NFS4ERR_XDEV"},
    {Status::NotDir, ENOTDIR, "NFS4ERR_NOTDIR"},
    {Status::IsDir, EISDIR, "NFS4ERR_ISDIR"},
    {Status::Inval, EINVAL, "NFS4ERR_INVAL"},
    {Status::FBig, EFBIG, "NFS4ERR_FBIG"},
    {Status::NoSpc, ENOSPC, "NFS4ERR_NOSPC"},
    {Status::RoFs, EROFS, "NFS4ERR_ROFS"},
    {Status::MLink, EMLINK, "NFS4ERR_MLINK"},
    {Status::NameTooLong, ENAMETOOLONG, "NFS4ERR_NAMETOOLONG"},
    {Status::NotEmpty, ENOTEMPTY, "NFS4ERR_NOTEMPTY"},
    {Status::DQuot, EDQUOT, "NFS4ERR_DQUOT"},
    {Status::Stale, ESTALE, "NFS4ERR_STALE"},
    {Status::BadHandle, ESTALE, "NFS4ERR_BADHANDLE"},
    {Status::BadCookie, EINVAL, "NFS4ERR_BAD_COOKIE"},
    {Status::NotSupp, EOPNOTSUPP, "NFS4ERR_NOTSUPP"},
    {Status::TooSmall, EINVAL, "NFS4ERR_TOOSMALL"},
    {Status::ServerFault, EREMOTEIO, "NFS4ERR_SERVERFAULT"},
    {Status::BadType, EINVAL, "NFS4ERR_BADTYPE"},
    {Status::Delay, EAGAIN, "NFS4ERR_DELAY"},
    {Status::Denied, EAGAIN, "NFS4ERR_DENIED"},
    {Status::Expired, EIO, "NFS4ERR_EXPIRED"},
    {Status::Locked, EAGAIN, "NFS4ERR_LOCKED"},
    {Status::Grace, EAGAIN, "NFS4ERR_GRACE"},
    {Status::FhExpired, ESTALE, "NFS4ERR_FHEXPIRED"},
    {Status::ShareDenied, EBUSY, "NFS4ERR_SHARE_DENIED"},
    {Status::WrongSec, EACCES, "NFS4ERR_WRONGSEC"},
    {Status::Resource, EREMOTEIO, "NFS4ERR_RESOURCE"},
    {Status::Moved, EREMOTE, "NFS4ERR_MOVED"},
    {Status::MinorVersMismatch, EPROTONOSUPPORT, "NFS4ERR_MINOR_VERS_MISMATCH"},
    {Status::StaleClientId, EIO, "NFS4ERR_STALE_CLIENTID"},
    {Status::BadStateid, EIO, "NFS4ERR_BAD_STATEID"},
    {Status::LockRange, EINVAL, "NFS4ERR_LOCK_RANGE"},
    {Status::Symlink, ELOOP, "NFS4ERR_SYMLINK"},
    {Status::AttrNotSupp, EOPNOTSUPP, "NFS4ERR_ATTRNOTSUPP"},
    {Status::BadXdr, EIO, "NFS4ERR_BADXDR"},
    {Status::LocksHeld, EBUSY, "NFS4ERR_LOCKS_HELD"},
    {Status::OpenMode, EBADF, "NFS4ERR_OPENMODE"},
    {Status::BadOwner, EINVAL, "NFS4ERR_BADOWNER"},
    {Status::BadChar, EINVAL, "NFS4ERR_BADCHAR"},
    {Status::BadName, EINVAL, "NFS4ERR_BADNAME"},
    {Status::BadRange, EINVAL, "NFS4ERR_BAD_RANGE"},
    {Status::LockNotSupp, ENOLCK, "NFS4ERR_LOCK_NOTSUPP"},
    {Status::Deadlock, EDEADLK, "NFS4ERR_DEADLOCK"},
    {Status::FileOpen, EBUSY, "NFS4ERR_FILE_OPEN"},
    {Status::AdminRevoked, EIO, "NFS4ERR_ADMIN_REVOKED"},
    {Status::BadSession, EIO, "NFS4ERR_BADSESSION"},
    {Status::WrongType, EINVAL, "NFS4ERR_WRONG_TYPE"},
    {Status::LocalTimedOut, ETIMEDOUT, "no answer in time"},
    {Status::LocalMalformed, EIO, "a malformed answer"},
    {Status::LocalRefused, EACCES, "the credentials were rejected"},
    {Status::LocalGone, ENOTCONN, "the client is shutting down"},
};

const Entry* find(Status status) {
    for (const Entry& entry : table)
        if (entry.status == status)
            return &entry;
    return nullptr;
}

} // namespace

int errnoOf(Status status) {
    const Entry* entry = find(status);
    return entry ? entry->error : EIO;
}

std::string nameOf(Status status) {
    const Entry* entry = find(status);
    return entry ? entry->name : "NFS status " + std::to_string(static_cast<std::uint32_t>(status));
}

} // namespace harbrix::nfs
