#include "ctl/Commands.h"
#include "ctl/StandardStreams.h"
#include "ctl/Table.h"

#include <QCoreApplication>

#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace {

using namespace harbrix;

ExitCode run() {
    const auto invocation = parseCommandLine(QCoreApplication::arguments());
    if (invocation)
        return runCommand(*invocation);
    const EarlyEnd& end = invocation.error();
    if (end.code == Succeeded)
        print(end.text);
    else
        printError(QStringLiteral("harbrixctl: %1\n").arg(visible(end.text)));
    return end.code;
}

} // namespace

int main(int argc, char** argv) {
    // Qt warns on standard error about every other character set.
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0)
        ::setenv("LC_ALL", "C.UTF-8", 1);
    const QCoreApplication application(argc, argv);
    // Qt's bus thread may still take messages while static objects are destroyed, and warns of it
    // on standard error; there is nothing to destroy that the end of the process does not.
    std::_Exit(run());
}
