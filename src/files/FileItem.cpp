#include "files/FileItem.h"

#include "files/CacheEntry.h"
#include "files/FileIo.h"
#include "files/FileUrl.h"

#include <QHash>
#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <numeric>

namespace harbrix {
namespace {

/// Random version 4 UUIDs (RFC 9562) without a system call for each: a listing makes a hundred
/// thousand, and they only have to be distinct.
class ItemIds {
public:
    [[nodiscard]] QUuid next() {
        quint32 words[4];
        m_generator.fillRange(words);
        words[1] = (words[1] & 0xffff0fffU) | 0x00004000U;
        words[2] = (words[2] & 0x3fffffffU) | 0x80000000U;
        return {words[0],
                static_cast<ushort>(words[1] >> 16),
                static_cast<ushort>(words[1]),
                static_cast<uchar>(words[2] >> 24),
                static_cast<uchar>(words[2] >> 16),
                static_cast<uchar>(words[2] >> 8),
                static_cast<uchar>(words[2]),
                static_cast<uchar>(words[3] >> 24),
                static_cast<uchar>(words[3] >> 16),
                static_cast<uchar>(words[3] >> 8),
                static_cast<uchar>(words[3])};
    }

private:
    QRandomGenerator m_generator = QRandomGenerator::securelySeeded();
};

bool readAttributes(int directory, const char* name, struct stat& status) {
    return ::fstatat(directory, name, &status, 0) == 0 ||
           ::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) == 0;
}

QDateTime toDateTime(const timespec& time) {
    return QDateTime::fromMSecsSinceEpoch(time.tv_sec * qint64(1000) + time.tv_nsec / 1'000'000,
                                          Qt::UTC);
}

} // namespace

QString FileItem::iconName() const {
    static const QHash<QByteArray, const char*> symbols = [] {
        QHash<QByteArray, const char*> table;
        const std::initializer_list<std::pair<const char*, const char*>> rows = {
            {"photo", "jpg jpeg png gif bmp heic tiff webp"},
            {"film", "mp4 mov avi mkv wmv"},
            {"music.note", "mp3 aac wav flac m4a"},
            {"doc.text", "pdf"},
            {"doc.plaintext", "txt md rtf"},
            {"doc.zipper", "zip rar 7z tar gz"},
        };
        for (const auto& [symbol, extensions] : rows) {
            for (const QByteArray& extension : QByteArray(extensions).split(' '))
                table.insert(extension, symbol);
        }
        return table;
    }();
    if (isDirectory)
        return QStringLiteral("folder");
    const QByteArray extension = splitName(nativeName(url)).extension.toLower();
    return QString::fromLatin1(symbols.value(extension, "doc"));
}

bool showTheSame(const std::vector<FileItem>& a, const std::vector<FileItem>& b) {
    return std::ranges::equal(a, b, [](const FileItem& one, const FileItem& other) {
        return one.size == other.size && one.isDirectory == other.isDirectory &&
               one.modificationDate == other.modificationDate && one.name == other.name;
    });
}

void sortForListing(std::vector<FileItem>& items, const NaturalCompare& names) {
    struct Place {
        bool isFile;
        QByteArray key;
        std::size_t index;
    };
    std::vector<Place> places;
    places.reserve(items.size());
    for (const FileItem& item : items)
        places.push_back({!item.isDirectory, names.sortKey(item.name), places.size()});
    // The former place decides between equals, which is what makes the sort stable.
    std::ranges::sort(places, [](const Place& a, const Place& b) {
        if (a.isFile != b.isFile)
            return b.isFile;
        const int order = a.key.compare(b.key);
        return order == 0 ? a.index < b.index : order < 0;
    });
    std::vector<FileItem> sorted;
    sorted.reserve(items.size());
    for (const Place& place : places)
        sorted.push_back(std::move(items[place.index]));
    items = std::move(sorted);
}

Result<std::vector<FileItem>, SystemError>
listDirectory(const QUrl& directory, const NaturalCompare& names, const QDateTime& now) {
    const DirectoryStream stream(::opendir(nativePath(directory).constData()));
    if (!stream)
        return lastError();
    const int descriptor = ::dirfd(stream.get());
    ItemIds ids;
    std::vector<FileItem> items;
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (!entry && errno != 0)
            return lastError();
        if (!entry)
            break;
        struct stat status {};
        if (entry->d_name[0] == '.' || !readAttributes(descriptor, entry->d_name, status))
            continue;
        const QByteArray name(entry->d_name);
        const QDateTime modified = toDateTime(status.st_mtim);
        items.push_back({ids.next(), childUrl(directory, name), nameText(name), status.st_size,
                         modified.isValid() ? modified : now, S_ISDIR(status.st_mode), false});
    }
    sortForListing(items, names);
    return items;
}

std::vector<FileItem> listCopies(const std::vector<const CacheEntry*>& entries,
                                 const NaturalCompare& names) {
    ItemIds ids;
    std::vector<FileItem> items;
    items.reserve(entries.size());
    for (const CacheEntry* entry : entries)
        items.push_back({ids.next(), entry->localURL, entry->fileName, entry->fileSize,
                         entry->cachedAt, entry->isDirectory, false});
    sortForListing(items, names);
    return items;
}

} // namespace harbrix
