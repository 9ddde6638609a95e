// Draws the windows in scripted states, for the README and the documentation.

#include "support/UiWorld.h"
#include "support/WaitUntil.h"
#include "ui/WindowScenes.h"
#include "ui/about/AboutView.h"
#include "ui/browser/ConflictResolutionSheet.h"
#include "ui/browser/FileBrowserView.h"
#include "ui/browser/FileBrowserWindow.h"
#include "ui/main/MainWindowView.h"
#include "ui/menu/StatusMenu.h"
#include "ui/settings/SettingsView.h"
#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>

namespace harbrix {
namespace {

/// What a shot is made of beside its scene, and which scenes are wanted: all of them if none is
/// named.
struct Variant {
    ColorScheme scheme;
    AppLanguage language;
    QStringList scenes;
};

void settle(UiWorld& world) {
    world.automation.scheduler.settle();
    for (int round = 0; round < 4; ++round)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

class Session {
public:
    Session(const Variant& variant, QDir folder)
        : m_variant(variant), m_folder(std::move(folder)), m_scenes(m_world.environment) {
        m_world.language.setSelectedLanguage(variant.language);
        m_world.automation.goOnline("192.168.1.24");
        settle(m_world);
    }

    void addSampleShares();
    void takeAll();

private:
    NASConfig addShare(const QString& name, const QString& address, const QString& range,
                       const MountState& state);
    MainWindowView& mainWindow(const QSize& size) {
        m_scenes.open(QStringLiteral("main"));
        auto* window = qobject_cast<MainWindowView*>(m_scenes.window(QStringLiteral("main")));
        window->resize(size);
        settle(m_world);
        return *window;
    }
    void save(QWidget& window, const QString& scene) {
        settle(m_world);
        if (QWidget* focus = window.focusWidget())
            focus->clearFocus();
        settle(m_world);
        write(window.grab(), scene);
    }
    void write(const QPixmap& shot, const QString& scene) const {
        if (!m_variant.scenes.isEmpty() && !m_variant.scenes.contains(scene))
            return;
        const bool dark = m_variant.scheme == ColorScheme::dark;
        const bool twice = shot.devicePixelRatio() > 1;
        const QString path =
            m_folder.filePath(QStringLiteral("%1-%2-%3%4.png")
                                  .arg(scene, rawValue(m_variant.language),
                                       dark ? QStringLiteral("dark") : QStringLiteral("light"),
                                       twice ? QStringLiteral("@2x") : QString()));
        if (!shot.save(path))
            std::fprintf(stderr, "screenshots: cannot write %s\n", qPrintable(path));
    }
    void takeMenu();
    void fillSampleShare(const QString& folder);
    void takeBrowser();
    void takeSettings();
    void takeAlert(MainWindowView& window);

    Variant m_variant;
    QDir m_folder;
    UiWorld m_world;
    WindowScenes m_scenes;
    std::vector<NASConfig> m_shares;
};

NASConfig Session::addShare(const QString& name, const QString& address, const QString& range,
                            const MountState& state) {
    NASConfig config = NASConfig::blank();
    config.name = name;
    config.address = address;
    config.sharePath = QStringLiteral("/shared/media");
    config.username = QStringLiteral("anna");
    config.networkBinding.ipRange = range;
    m_world.automation.store.add(config);
    std::optional<QUrl> mountPoint;
    if (state.kind() == MountState::Kind::mounted)
        mountPoint = QUrl::fromLocalFile(QStringLiteral("/home/anna/HarbrixVolumes/") + name);
    m_world.automation.appState.updateStatus(config.id, state, mountPoint);
    m_shares.push_back(config);
    return config;
}

void Session::addSampleShares() {
    const bool chinese = m_variant.language == AppLanguage::zhHans;
    const auto name = [chinese](const char* english, const char* translated) {
        return QString::fromUtf8(chinese ? translated : english);
    };
    const QString home = QStringLiteral("192.168.1.0/24");
    addShare(name("Media", "家庭影音"), "192.168.1.10", home, MountState::Kind::mounted);
    addShare(name("Photos", "照片备份"), "192.168.1.10", "0.0.0.0/0", MountState::Kind::mounted);
    addShare(name("Time Archive", "归档"), "nas.local", home, MountState::Kind::mounting);
    addShare(name("Studio", "工作室"), "192.168.1.42", home,
             MountState::failed(HarbrixError::authenticationFailed(
                 QStringLiteral("The server refused the user name or the password."))));
    addShare(name("Office", "公司文件"), "10.20.0.5", "10.20.0.0/16", MountState::Kind::offline);
    NASConfig manual =
        addShare(name("Backups", "备份"), "backup.local", home, MountState::Kind::idle);
    manual.isEnabled = false;
    m_world.automation.store.update(manual);
}

void Session::takeMenu() {
    StatusMenu menu(StatusMenu::ShownBy::Program);
    menu.setContent(menuContent(m_world.automation.store.configs(),
                                m_world.automation.appState.nasStatuses(),
                                m_world.recentFiles.recentFiles()));
    // Popped up it would be cut to the size of a display that nobody sees.
    menu.ensurePolished();
    menu.resize(menu.sizeHint());
    write(menu.grab(), QStringLiteral("menu"));
}

void Session::takeAlert(MainWindowView& window) {
    window.setSelectedConfigID(m_shares[4].id);
    settle(m_world);
    window.findChild<QPushButton*>(QStringLiteral("mount"))->click();
    settle(m_world);
    auto* alert = window.findChild<QWidget*>(QStringLiteral("networkMismatchAlert"));
    QPixmap shot = window.grab();
    const QPixmap box = alert->grab();
    QPainter painter(&shot);
    painter.fillRect(QRect(QPoint(), window.size()), QColor(0, 0, 0, 70));
    const QRect place(
        QPoint((window.width() - alert->width()) / 2, (window.height() - alert->height()) / 2),
        alert->size());
    painter.drawPixmap(place.topLeft(), box);
    painter.setPen(color(Tint::border, window.palette()));
    painter.drawRect(place.adjusted(-1, -1, 0, 0));
    painter.end();
    write(shot, QStringLiteral("mismatch"));
    alert->findChild<QPushButton*>(QStringLiteral("cancelMount"))->click();
    settle(m_world);
}

/// A share with something of every kind.
void Session::fillSampleShare(const QString& folder) {
    const bool chinese = m_variant.language == AppLanguage::zhHans;
    const auto name = [chinese](const char* english, const char* translated) {
        return QString::fromUtf8(chinese ? translated : english);
    };
    const QDateTime now = m_world.automation.scheduler.wallClock();
    for (const QString& directory : {name("Films", "电影"), name("Music", "音乐")}) {
        QDir().mkpath(folder + u'/' + directory);
        const timespec times[2]{{now.toSecsSinceEpoch(), 0}, {now.toSecsSinceEpoch() - 90'000, 0}};
        ::utimensat(AT_FDCWD, QFile::encodeName(folder + u'/' + directory).constData(), times, 0);
    }
    const struct {
        QString name;
        qint64 size;
        int hoursAgo;
    } files[] = {
        {name("Annual report 2024.pdf", "2024 年度报告.pdf"), 2'400'000, 3},
        {name("Backup.tar.gz", "备份.tar.gz"), 734'000'000, 30},
        {name("Holiday 9.jpg", "假期 9.jpg"), 4'100'000, 200},
        {name("Holiday 10.jpg", "假期 10.jpg"), 3'800'000, 200},
        {name("Lecture.mp4", "讲座.mp4"), 1'250'000'000, 700},
        {name("Notes.md", "笔记.md"), 12'700, 1},
        {name("Song.flac", "歌曲.flac"), 31'000'000, 9000},
    };
    for (const auto& file : files) {
        QFile written(folder + u'/' + file.name);
        if (!written.open(QIODevice::WriteOnly) || !written.resize(file.size))
            std::fprintf(stderr, "screenshots: cannot write %s\n", qPrintable(file.name));
        written.setFileTime(now.addSecs(-3600 * file.hoursAgo), QFileDevice::FileModificationTime);
    }
}

/// The files, transfers in all their states, a clash of names and a preview.
void Session::takeBrowser() {
    const QString share = m_world.directory.filePath(QStringLiteral("Media"));
    const QString local = m_world.directory.filePath(QStringLiteral("local"));
    QDir().mkpath(share);
    QDir().mkpath(local);
    const auto waitFor = [this](const std::function<bool()>& condition) {
        return waitUntil([&] {
            m_world.automation.scheduler.advance(Seconds(0));
            return condition();
        });
    };
    m_scenes.open(QStringLiteral("file-browser"));
    auto& window =
        *qobject_cast<FileBrowserWindow*>(m_scenes.window(QStringLiteral("file-browser")));
    save(window, QStringLiteral("browser-nothing"));
    m_world.browserState.show(m_shares[0], QUrl::fromLocalFile(share));
    FileSystemManager& files = window.view()->fsManager();
    (void) waitFor([&files] { return !files.isLoading(); });
    save(window, QStringLiteral("browser-empty"));

    fillSampleShare(share);
    files.launch(files.refresh());
    (void) waitFor([&files] { return !files.isLoading() && !files.currentItems()->empty(); });
    auto* table = window.findChild<QTableView*>(QStringLiteral("fileTable"));
    TransferManager& transfers = window.view()->transferManager();
    window.resize(900, 660);
    const QUrl destination = QUrl::fromLocalFile(local);
    const FileSystemManager::Items items = files.currentItems();
    const std::vector<FileItem>& listed = *items;
    const auto largest = std::ranges::max_element(listed, {}, &FileItem::size);
    transfers.enqueueDownload(listed.back().url, destination);
    transfers.enqueueDownload(largest->url, destination);
    transfers.enqueueUpload(listed[2].url, destination);
    (void) waitFor([&transfers] {
        return transfers.tasks().size() == 3 && transfers.tasks()[1].bytesTransferred > 400'000'000;
    });
    m_world.automation.scheduler.advance(Seconds(4));
    const qint64 before = transfers.tasks()[1].bytesTransferred;
    (void) waitFor([&transfers, before] {
        return transfers.tasks()[1].bytesTransferred > before + 150'000'000;
    });
    table->selectRow(2);
    save(window, QStringLiteral("browser"));
    transfers.cancel(transfers.tasks()[1].id);
    (void) waitFor([&transfers] { return !transfers.isProcessing(); });

    ConflictResolutionSheet sheet(listed[2].name, &window);
    sheet.show();
    save(sheet, QStringLiteral("conflict"));
    sheet.hide();
    window.view()->quickLook().preview(listed[3].url);
    QWidget* panel = window.findChild<QWidget*>(QStringLiteral("previewPanel"));
    (void) waitFor(
        [panel] { return panel->findChild<QWidget*>(QStringLiteral("previewCard"))->isVisible(); });
    save(*panel, QStringLiteral("preview"));
    window.close();
}

void Session::takeSettings() {
    m_scenes.open(QStringLiteral("settings"));
    auto& window = *qobject_cast<SettingsView*>(m_scenes.window(QStringLiteral("settings")));
    int number = 0;
    for (const char* page :
         {"language", "launch", "notifications", "cache", "advanced", "logging"}) {
        window.showTab(number++);
        // Tall enough for all of the page, so that nothing of it is missed.
        const auto areas = window.findChildren<QScrollArea*>(QStringLiteral("formScroll"));
        const auto shown = std::ranges::find_if(areas, &QWidget::isVisible);
        settle(m_world);
        const int wanted = (*shown)->widget()->heightForWidth((*shown)->viewport()->width());
        window.resize(SettingsView::defaultSize.width(),
                      window.height() - (*shown)->viewport()->height() +
                          std::max((*shown)->widget()->sizeHint().height(), wanted));
        save(window, QStringLiteral("settings-") + QString::fromLatin1(page));
        window.resize(SettingsView::defaultSize);
    }
    window.close();
}

void Session::takeAll() {
    const QSize regular(760, 560);
    save(mainWindow({600, 500}), QStringLiteral("empty"));
    addSampleShares();
    MainWindowView& window = mainWindow(regular);
    save(window, QStringLiteral("folders"));
    window.setSelectedConfigID(m_shares[0].id);
    save(window, QStringLiteral("form-smb"));
    window.setSelectedConfigID(m_shares[3].id);
    save(window, QStringLiteral("form-failed"));
    window.findChild<QComboBox*>(QStringLiteral("protocol"))->setCurrentIndex(1);
    save(window, QStringLiteral("form-nfs"));
    window.findChild<QPushButton*>(QStringLiteral("testConnection"))->click();
    settle(m_world);
    auto* scroll = window.findChild<QScrollArea*>(QStringLiteral("formScroll"));
    scroll->verticalScrollBar()->setValue(scroll->verticalScrollBar()->maximum());
    save(window, QStringLiteral("form-binding"));
    takeAlert(window);
    window.setSelectedConfigID(m_shares[0].id);
    save(mainWindow({500, 400}), QStringLiteral("smallest"));
    const std::unique_ptr<QWidget> about(makeAboutWindow(m_world.environment));
    about->show();
    save(*about, QStringLiteral("about"));
    takeBrowser();
    takeSettings();
    takeMenu();
}

} // namespace
} // namespace harbrix

int main(int argc, char** argv) {
    using namespace harbrix;
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto language = std::ranges::find(allLanguages(), arguments.value(2),
                                            [](AppLanguage one) { return rawValue(one); });
    if (language == allLanguages().end()) {
        std::fprintf(stderr, "usage: screenshots FOLDER LANGUAGE [SCENE...]\n");
        return 64;
    }
    const QDir folder(arguments.at(1));
    QDir().mkpath(folder.path());
    Theme theme(application);
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        theme.setColorScheme(scheme);
        theme.useLanguage(QLocale(rawValue(*language)));
        Session({scheme, *language, arguments.mid(3)}, folder).takeAll();
    }
    return 0;
}
