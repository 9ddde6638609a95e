#include "services/FrameSymbols.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cxxabi.h>
#include <elfutils/libdwfl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <optional>

namespace harbrix {
namespace {

/// "module(symbol+0x1f) [0x55d0c81a71c2]"; without a symbol the offset counts from the place that
/// the module was loaded at.
struct RawFrame {
    QString module;
    QByteArray symbol;
    quint64 offset = 0;
};

std::optional<RawFrame> parseFrame(const QString& frame) {
    static const QRegularExpression form(
        QStringLiteral(R"(^(.+)\(([^()]*)\+0x([0-9a-f]{1,16})\) \[0x[0-9a-f]+\]$)"));
    const auto match = form.match(frame);
    if (!match.hasMatch())
        return std::nullopt;
    return RawFrame{match.captured(1), match.captured(2).toLatin1(),
                    match.captured(3).toULongLong(nullptr, 16)};
}

QString demangled(const char* name) {
    int status = 0;
    char* const plain = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    const QString text = QString::fromUtf8(plain ? plain : name);
    std::free(plain); // NOLINT: the caller's, by the C++ ABI
    return text;
}

/// Paths are relative to the sources; one that is not would tell of the machine of the build.
QString sourceFileText(const char* path) {
    const QString clean = QDir::cleanPath(QFile::decodeName(path));
    return clean.startsWith(u'/') ? clean.section(u'/', -1) : clean;
}

/// One ELF file with its debug information.
class Module {
public:
    Module(const QString& path, QByteArray debugPath)
        : m_debugPath(std::move(debugPath)), m_debugPathText(m_debugPath.data()) {
        m_session.reset(::dwfl_begin(&m_callbacks));
        if (!m_session)
            return;
        ::dwfl_report_begin(m_session.get());
        const QByteArray file = QFile::encodeName(path);
        m_module = ::dwfl_report_elf(m_session.get(), file.constData(), file.constData(), -1, 0,
                                     true); // where it would lie if it were loaded at 0
        ::dwfl_report_end(m_session.get(), nullptr, nullptr);
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() = default;

    [[nodiscard]] std::optional<quint64> addressOf(const RawFrame& frame) const {
        if (frame.symbol.isEmpty())
            return frame.offset;
        const int count = m_module ? ::dwfl_module_getsymtab(m_module) : 0;
        for (int i = 0; i < count; ++i) {
            GElf_Sym symbol{};
            GElf_Addr address = 0;
            const char* name = ::dwfl_module_getsym_info(m_module, i, &symbol, &address, nullptr,
                                                         nullptr, nullptr);
            if (name && frame.symbol == name && symbol.st_value != 0)
                return address + frame.offset;
        }
        return std::nullopt;
    }

    /// "function at file:line", the function alone, or nothing.
    [[nodiscard]] QString describe(quint64 address) const {
        if (!m_module)
            return {};
        const QString function = functionAt(address);
        const QString line = lineAt(address);
        return function.isEmpty() || line.isEmpty() ? function
                                                    : function + QStringLiteral(" at ") + line;
    }

private:
    struct End {
        void operator()(Dwfl* session) const { ::dwfl_end(session); }
    };

    [[nodiscard]] QString functionAt(quint64 address) const {
        GElf_Off offset = 0;
        GElf_Sym symbol{};
        const char* name =
            ::dwfl_module_addrinfo(m_module, address, &offset, &symbol, nullptr, nullptr, nullptr);
        // A stripped module offers the nearest symbol that is left, which may be far off.
        return name && offset < symbol.st_size ? demangled(name) : QString();
    }

    [[nodiscard]] QString lineAt(quint64 address) const {
        Dwfl_Line* const line = ::dwfl_module_getsrc(m_module, address);
        int number = 0;
        const char* file =
            line ? ::dwfl_lineinfo(line, nullptr, &number, nullptr, nullptr, nullptr) : nullptr;
        return file ? QStringLiteral("%1:%2").arg(sourceFileText(file)).arg(number) : QString();
    }

    QByteArray m_debugPath;
    char* m_debugPathText;
    // The search by build id alone: the standard one would ask servers ($DEBUGINFOD_URLS), too.
    Dwfl_Callbacks m_callbacks{.find_elf = ::dwfl_build_id_find_elf,
                               .find_debuginfo = ::dwfl_build_id_find_debuginfo,
                               .section_address = ::dwfl_offline_section_address,
                               .debuginfo_path = &m_debugPathText};
    std::unique_ptr<Dwfl, End> m_session;
    Dwfl_Module* m_module = nullptr; ///< the session's
};

/// The path of a module that a frame names.
QString modulePath(QString name, const FrameOrigin& origin) {
    // The home folder was taken out wherever its text stood: "/var~/x" may be "/var/tmp/x".
    if (!QFileInfo::exists(name))
        name.replace(u'~', origin.homeDirectory);
    if (name.startsWith(u'/'))
        return name;
    const bool isThisProgram =
        QFileInfo(name).fileName() == QFileInfo(origin.executable).fileName();
    return isThisProgram ? origin.executable : QString();
}

/// Whether the file is a regular one that has lain there untouched since before the crash.
bool isUnchanged(const QString& path, const QDateTime& time) {
    struct stat status {};
    return !path.isEmpty() && ::stat(QFile::encodeName(path).constData(), &status) == 0 &&
           S_ISREG(status.st_mode) && status.st_ctim.tv_sec <= time.toSecsSinceEpoch();
}

/// The modules that the frames of one trace are in, each opened once.
class Modules {
public:
    Modules(const FrameOrigin& origin, const QString& debugPath)
        : m_origin(origin), m_debugPath(QFile::encodeName(debugPath)) {}

    /// Nothing where the module is not there any more.
    [[nodiscard]] const Module* find(const QString& name) {
        const QString path = modulePath(name, m_origin);
        const auto [entry, isNew] = m_opened.try_emplace(path);
        if (isNew && isUnchanged(path, m_origin.time))
            entry->second = std::make_unique<Module>(path, m_debugPath);
        return entry->second.get();
    }

private:
    const FrameOrigin& m_origin;
    QByteArray m_debugPath;
    std::map<QString, std::unique_ptr<Module>> m_opened;
};

/// The kernel has a signal handler return through a trampoline of the C library.
bool isCLibrary(const RawFrame& frame) {
    return QFileInfo(frame.module).fileName().startsWith(QLatin1String("libc.so"));
}

} // namespace

QStringList withSymbols(const QStringList& frames, const FrameOrigin& origin,
                        const QString& debugPath) {
    Modules modules(origin, debugPath);
    QStringList described;
    bool isInterrupted = false;
    bool sawTrampoline = !origin.isFromSignal;
    for (const QString& frame : frames) {
        described << frame;
        const auto raw = parseFrame(frame);
        if (!raw)
            continue;
        // A return address is that of the instruction after the call, maybe on the next line.
        const quint64 back = std::exchange(isInterrupted, false) ? 0 : 1;
        if (!sawTrampoline && isCLibrary(*raw))
            sawTrampoline = isInterrupted = true;
        const Module* module = modules.find(raw->module);
        const auto address = module ? module->addressOf(*raw) : std::nullopt;
        const QString description = address ? module->describe(*address - back) : QString();
        if (!description.isEmpty())
            described.last() += u' ' + withoutHome(description, origin.homeDirectory);
    }
    return described;
}

QString withoutHome(QString text, const QString& homeDirectory) {
    if (homeDirectory.isEmpty() || homeDirectory == QLatin1String("/"))
        return text;
    return text.replace(homeDirectory, QStringLiteral("~"));
}

} // namespace harbrix
