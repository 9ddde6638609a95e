#include "platform/linux/MountInfo.h"

#include <linux/magic.h>

namespace harbrix {

namespace {

bool isOctal(char digit) {
    return digit >= '0' && digit <= '7';
}

/// Blanks, line ends and backslashes stand in the table as a backslash and three octal digits.
QString unescaped(const QByteArray& field) {
    QByteArray plain;
    for (qsizetype index = 0; index < field.size(); ++index) {
        const bool isEscape = field[index] == '\\' && index + 3 < field.size() &&
                              isOctal(field[index + 1]) && isOctal(field[index + 2]) &&
                              isOctal(field[index + 3]);
        if (!isEscape) {
            plain += field[index];
            continue;
        }
        plain += static_cast<char>((field[index + 1] - '0') * 64 + (field[index + 2] - '0') * 8 +
                                   (field[index + 3] - '0'));
        index += 3;
    }
    return QString::fromUtf8(plain);
}

bool hasReadOnly(const QByteArray& options) {
    return options.split(',').contains("ro");
}

} // namespace

std::vector<MountInfoRow> parseMountInfo(const QByteArray& text) {
    // id parent device root mount-point options optional... - type source super-options
    constexpr qsizetype mountPointField = 4;
    constexpr qsizetype optionsField = 5;
    std::vector<MountInfoRow> rows;
    for (const QByteArray& line : text.split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-", optionsField + 1);
        bool isNumber = false;
        const int id = fields.first().toInt(&isNumber);
        if (!isNumber || dash < 0 || dash + 3 >= fields.size())
            continue;
        rows.push_back({id,
                        {unescaped(fields[mountPointField]), unescaped(fields[dash + 1]),
                         unescaped(fields[dash + 2]),
                         hasReadOnly(fields[optionsField]) || hasReadOnly(fields[dash + 3])}});
    }
    return rows;
}

QString fileSystemTypeName(quint32 magic, const QString& kernelType) {
    static const QString smb = QStringLiteral("smbfs");
    static const QString nfs = QStringLiteral("nfs");
    static const QHash<QString, QString> names = {
        {QStringLiteral("cifs"), smb},       {QStringLiteral("smb3"), smb},
        {QStringLiteral("fuse.smbfs"), smb}, {QStringLiteral("nfs4"), nfs},
        {QStringLiteral("fuse.nfs"), nfs},
    };
    if (magic == CIFS_SUPER_MAGIC || magic == SMB2_SUPER_MAGIC)
        return smb;
    if (magic == NFS_SUPER_MAGIC)
        return nfs;
    constexpr qsizetype longest = 15;
    return names.value(kernelType, QString::fromUtf8(kernelType.toUtf8().left(longest)));
}

} // namespace harbrix
