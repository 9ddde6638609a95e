#include "mount_nfs/fuse/Identity.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <optional>
#include <utility>
#include <vector>

namespace harbrix::nfs {

namespace {

using namespace std::chrono_literals;
constexpr auto callerLifetime = 2s;
constexpr std::size_t maximumCallers = 256;
constexpr std::size_t maximumNames = 4096;
constexpr std::uint32_t nobody = 65534;

std::optional<std::uint32_t> asNumber(const std::string& text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || text.empty())
        return std::nullopt;
    return number;
}

std::string localName(const std::string& owner) {
    return owner.substr(0, owner.find('@'));
}

uid_t lookUpUser(const std::string& owner) {
    std::array<char, 4096> space;
    passwd entry{};
    passwd* found = nullptr;
    getpwnam_r(localName(owner).c_str(), &entry, space.data(), space.size(), &found);
    return found ? found->pw_uid : nobody;
}

gid_t lookUpGroup(const std::string& owner) {
    std::array<char, 16384> space;
    ::group entry{};
    ::group* found = nullptr;
    getgrnam_r(localName(owner).c_str(), &entry, space.data(), space.size(), &found);
    return found ? found->gr_gid : nobody;
}

template <typename Id, typename LookUp>
Id resolve(std::unordered_map<std::string, Id>& known, const std::string& owner, LookUp lookUp) {
    if (const auto number = asNumber(owner))
        return *number;
    if (const auto found = known.find(owner); found != known.end())
        return found->second;
    if (known.size() >= maximumNames)
        known.clear();
    return known[owner] = lookUp(owner);
}

} // namespace

Callers::Callers() : m_servesOthers(geteuid() == 0) {
    m_own.uid = geteuid();
    m_own.gid = getegid();
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
    const int count = getgroups(static_cast<int>(groups.size()), groups.data());
    groups.resize(static_cast<std::size_t>(std::max(count, 0)));
    m_own.groups = std::move(groups);
}

Credentials Callers::of(fuse_req_t request) {
    const fuse_ctx* context = fuse_req_ctx(request);
    if (!m_servesOthers || context->pid == 0)
        return m_own;
    const TimePoint now = Clock::now();
    const auto found = m_known.find(context->pid);
    if (found != m_known.end() && found->second.until > now &&
        found->second.credentials.uid == context->uid &&
        found->second.credentials.gid == context->gid)
        return found->second.credentials;
    if (m_known.size() >= maximumCallers)
        m_known.clear();
    Credentials caller{context->uid, context->gid, {}};
    std::array<gid_t, 64> groups{};
    const int count = fuse_req_getgroups(request, static_cast<int>(groups.size()), groups.data());
    if (count > 0)
        caller.groups.assign(groups.begin(),
                             groups.begin() + std::min(count, static_cast<int>(groups.size())));
    m_known[context->pid] = {caller, now + callerLifetime};
    return caller;
}

OwnerMap::OwnerMap(Ownership ownership) : m_ownership(ownership) {}

uid_t OwnerMap::user(const std::string& owner) {
    return m_ownership == Ownership::Own ? geteuid() : resolve(m_users, owner, lookUpUser);
}

gid_t OwnerMap::group(const std::string& owner) {
    return m_ownership == Ownership::Own ? getegid() : resolve(m_groups, owner, lookUpGroup);
}

} // namespace harbrix::nfs
