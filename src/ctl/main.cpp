#include "ctl/Commands.h"
#include "ctl/StandardStreams.h"
#include "ctl/Table.h"

#include <QCoreApplication>

#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
    // Qt warns on standard error about every other character set.
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0)
        ::setenv("LC_ALL", "C.UTF-8", 1);
    QCoreApplication application(argc, argv);

    const auto invocation = harbrix::parseCommandLine(QCoreApplication::arguments());
    if (invocation)
        return harbrix::runCommand(*invocation);
    if (invocation.error().code == harbrix::Succeeded)
        harbrix::print(invocation.error().text);
    else
        harbrix::printError(
            QStringLiteral("harbrixctl: %1\n").arg(harbrix::visible(invocation.error().text)));
    return invocation.error().code;
}
