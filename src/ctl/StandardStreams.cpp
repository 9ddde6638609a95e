#include "ctl/StandardStreams.h"

#include <cstdio>

namespace harbrix {
namespace {

void writeTo(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

void print(const QString& text) {
    writeTo(stdout, text);
}

void printError(const QString& text) {
    writeTo(stderr, text);
}

} // namespace harbrix
