// Drives the browser window over a mounted share: argv[1] is the mount point. Reads one command in
// a line and answers each with one line, "ok ..." or "failed ...":
//
//     list A|B..           wait until exactly these rows are there
//     open NAME            double-click a row
//     up                   the back button
//     stall SECONDS        let time pass; the longest time for which the window was blocked
//     preview PAGE         wait until the preview panel shows this page
//     drop PATH|PATH..     drop files
//     conflict             wait for the conflict sheet; its message
//     resolve BUTTON       press a button of the sheet
//     download NAME DIR    select a row and download it into a directory
//     transfers N          wait until N transfers have ended; their names and states
//     offline              wait until the share is listed from the cache
//     cached N             wait until the cache holds N files
//     shot FILE            save a picture of the window

#include "base/Scheduler.h"
#include "support/UiWorld.h"
#include "support/WaitUntil.h"
#include "ui/WindowScenes.h"
#include "ui/browser/FileBrowserView.h"
#include "ui/browser/FileBrowserWindow.h"
#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include <iostream>

namespace harbrix {
namespace {

class Run {
public:
    explicit Run(const QString& mountPoint) {
        m_world.language.setSelectedLanguage(AppLanguage::english);
        NASConfig config = NASConfig::blank();
        config.name = QStringLiteral("Media");
        m_world.browserState.show(config, QUrl::fromLocalFile(mountPoint));
        m_scenes.open(QStringLiteral("file-browser"));
    }

    QString perform(const QString& command, const QString& rest);

private:
    static bool wait(const std::function<bool()>& condition) {
        return waitUntil(condition, std::chrono::seconds(30));
    }
    FileBrowserWindow& window() {
        return *qobject_cast<FileBrowserWindow*>(m_scenes.window(QStringLiteral("file-browser")));
    }
    FileBrowserView& view() { return *window().view(); }
    template <typename Widget = QWidget>
    Widget* find(const char* name) {
        return window().findChild<Widget*>(QString::fromLatin1(name));
    }
    QTableView& table() { return *find<QTableView>("fileTable"); }
    QStringList names() {
        QStringList names;
        for (const FileItem& item : *view().fsManager().currentItems())
            names << item.name;
        return names;
    }
    bool select(const QString& name) {
        const auto row = names().indexOf(name);
        if (row < 0)
            return false;
        const QModelIndex index = table().model()->index(int(row), 0);
        table().scrollTo(index);
        m_place = table().visualRect(index).center();
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, m_place);
        return true;
    }
    void drop(const QString& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths.split(u'|'))
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(find("fileList"), &enter);
        QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(find("fileList"), &event);
    }
    bool download(const QString& name, const QString& directory) {
        if (!select(name))
            return false;
        find<QPushButton>("download")->click();
        auto* panel = find<QFileDialog>("savePanel");
        if (!panel)
            return false;
        panel->setDirectory(QFileInfo(directory).path());
        panel->selectFile(QFileInfo(directory).fileName());
        panel->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        return true;
    }
    QString transfers(std::size_t count) {
        const auto& tasks = view().transferManager().tasks();
        const bool ended =
            wait([&] { return tasks.size() == count && std::ranges::all_of(tasks, isFinished); });
        QStringList told;
        for (const TransferTask& task : tasks)
            told << task.sourceURL.fileName() + u' ' + rawValue(task.status);
        return (ended ? QStringLiteral("ok ") : QStringLiteral("failed ")) + told.join(u'|');
    }

    UiWorld m_world;
    RealScheduler m_scheduler;
    CacheManager m_cache{m_world.automation.defaults, m_scheduler,
                         m_world.directory.filePath(QStringLiteral("real"))};
    Environment m_environment = m_world.environmentWith(m_cache, m_scheduler);
    WindowScenes m_scenes{m_environment};
    QPoint m_place;
};

/// In seconds.
double longestStall(int seconds) {
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout,
                     [&] { longest = std::max(longest, sinceTick.restart()); });
    QElapsedTimer whole;
    whole.start();
    sinceTick.start();
    tick.start(10);
    (void) waitUntil([&] { return whole.hasExpired(seconds * 1000); }, std::chrono::seconds(60));
    return static_cast<double>(longest) / 1000.0;
}

QString outcome(bool isGood, const QString& told = {}) {
    return (isGood ? QStringLiteral("ok ") : QStringLiteral("failed ")) + told;
}

QString Run::perform(const QString& command, const QString& rest) {
    if (command == u"list") {
        const QStringList wanted = rest.split(u'|', Qt::SkipEmptyParts);
        const bool listed =
            wait([&] { return names() == wanted && !view().fsManager().isLoading(); });
        return outcome(listed, names().join(u'|'));
    }
    if (command == u"open") {
        if (!select(rest))
            return outcome(false, QStringLiteral("no such row"));
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, m_place);
        return outcome(true);
    }
    if (command == u"preview") {
        const QByteArray page = rest.toLatin1();
        return outcome(wait([&] {
            const auto* shown = find(page.constData());
            return shown && shown->isVisible();
        }));
    }
    if (command == u"up") {
        find<QToolButton>("back")->click();
        return outcome(true);
    }
    if (command == u"stall")
        return outcome(true, QString::number(longestStall(rest.toInt())));
    if (command == u"drop") {
        drop(rest);
        return outcome(true);
    }
    if (command == u"conflict") {
        const bool asked = wait([this] { return find("conflictSheet") != nullptr; });
        return outcome(asked, asked ? find<QLabel>("conflictMessage")->text() : QString());
    }
    if (command == u"resolve") {
        find<QPushButton>(rest.toLatin1().constData())->click();
        return outcome(true);
    }
    if (command == u"download")
        return outcome(download(rest.section(u' ', 0, 0), rest.section(u' ', 1)));
    if (command == u"transfers")
        return transfers(rest.toULong());
    if (command == u"offline")
        return outcome(wait([this] { return view().fsManager().isOfflineMode(); }));
    if (command == u"cached")
        return outcome(wait([&] { return m_cache.entries().size() == rest.toULong(); }),
                       QString::number(m_cache.entries().size()));
    if (command == u"shot")
        return outcome(window().grab().save(rest));
    return outcome(false, QStringLiteral("no such command"));
}

} // namespace
} // namespace harbrix

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const harbrix::Theme theme(application);
    harbrix::Run run(QString::fromLocal8Bit(argv[1]));
    for (std::string line; std::getline(std::cin, line);) {
        const QString words = QString::fromStdString(line);
        std::cout << run.perform(words.section(u' ', 0, 0), words.section(u' ', 1)).toStdString()
                  << std::endl;
    }
    return 0;
}
