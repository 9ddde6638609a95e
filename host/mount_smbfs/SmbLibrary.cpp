#include "mount_smbfs/SmbLibrary.h"

#include "base/UniqueDescriptor.h"

#include <dlfcn.h>
#include <libsmbclient.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

namespace harbrix {

namespace {

// The table that libsamba-util's smb_thread_set_functions() takes; the library keeps its address.
struct SambaThreadFunctions {
    int (*createMutex)(const char*, void**, const char*);
    void (*destroyMutex)(void*, const char*);
    int (*lockMutex)(void*, int, const char*);
    int (*createTls)(const char*, void**, const char*);
    void (*destroyTls)(void**, const char*);
    int (*setTls)(void*, const void*, const char*);
    void* (*getTls)(void*, const char*);
};

int createMutex(const char*, void** mutex, const char*) {
    auto* created = new pthread_mutex_t;
    *mutex = created;
    return ::pthread_mutex_init(created, nullptr);
}

void destroyMutex(void* mutex, const char*) {
    ::pthread_mutex_destroy(static_cast<pthread_mutex_t*>(mutex));
    delete static_cast<pthread_mutex_t*>(mutex);
}

int lockMutex(void* mutex, int kind, const char*) {
    constexpr int unlock = 2;
    return kind == unlock ? ::pthread_mutex_unlock(static_cast<pthread_mutex_t*>(mutex))
                          : ::pthread_mutex_lock(static_cast<pthread_mutex_t*>(mutex));
}

int createTls(const char*, void** key, const char*) {
    auto* created = new pthread_key_t;
    *key = created;
    return ::pthread_key_create(created, nullptr);
}

void destroyTls(void** key, const char*) {
    ::pthread_key_delete(*static_cast<pthread_key_t*>(*key));
    delete static_cast<pthread_key_t*>(*key);
    *key = nullptr;
}

int setTls(void* key, const void* value, const char*) {
    return ::pthread_setspecific(*static_cast<pthread_key_t*>(key), value);
}

void* getTls(void* key, const char*) {
    // The library looks before it has made its key.
    return key ? ::pthread_getspecific(*static_cast<pthread_key_t*>(key)) : nullptr;
}

constexpr SambaThreadFunctions threadFunctions{createMutex, destroyMutex, lockMutex, createTls,
                                               destroyTls,  setTls,       getTls};

bool makeThreadSafe() {
    if (void* whole = ::dlsym(RTLD_DEFAULT, "smbc_thread_posix")) {
        reinterpret_cast<void (*)()>(whole)();
        return true;
    }
    if (void* lower = ::dlsym(RTLD_DEFAULT, "smb_thread_set_functions"))
        return reinterpret_cast<int (*)(const SambaThreadFunctions*)>(lower)(&threadFunctions) == 0;
    return false;
}

} // namespace

bool prepareSmbLibrary() {
    // The library reads $HOME/.smb/smb.conf; there is none below /dev/null.
    ::setenv("HOME", "/dev/null", 1);
    ::unsetenv("SMB_CONF_PATH");
    return makeThreadSafe();
}

void SmbContextData::attach(SMBCCTX* context) {
    m_hasCredentials = false;
    smbc_setOptionUserData(context, this);
}

void applySmbSettings(SMBCCTX* context) {
    constexpr std::string_view settings = "[global]\n"
                                          "name resolve order = host\n"
                                          "client min protocol = SMB2_02\n"
                                          "client max protocol = SMB3_11\n"
                                          "log level = 0\n"
                                          "log file = /dev/null\n";
    const UniqueDescriptor file(::memfd_create("smb.conf", MFD_CLOEXEC));
    if (::write(file.get(), settings.data(), settings.size()) < 0)
        return;
    const std::string path = "/proc/self/fd/" + std::to_string(file.get());
    (void) smbc_setConfiguration(context, path.c_str());
}

} // namespace harbrix

// Stands before the library's own function, which the library calls for every path and every entry
// of a listing although a connection has one login only; that took a third of the time of a look-up
// and most of that of a listing here. (libsmbclient.h gives the name to C++ by mistake.)
extern "C" {
[[gnu::visibility("default")]] void
giveCredentialsOnce(SMBCCTX* context, const char* workgroup, const char* user,
                    const char* password) __asm__("smbc_set_credentials_with_fallback");

void giveCredentialsOnce(SMBCCTX* context, const char* workgroup, const char* user,
                         const char* password) {
    static const auto next = reinterpret_cast<decltype(&giveCredentialsOnce)>(
        ::dlsym(RTLD_NEXT, "smbc_set_credentials_with_fallback"));
    auto* data = static_cast<harbrix::SmbContextData*>(smbc_getOptionUserData(context));
    if (data && data->hasCredentials())
        return;
    next(context, workgroup, user, password);
    // A path names no user; the login's own name comes once the connection is there.
    if (data && user && *user != '\0')
        data->noteCredentials();
}
}
