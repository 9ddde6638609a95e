#include "ui/TextFit.h"

#include "ui/BrowserFixture.h"
#include "ui/about/AboutView.h"
#include "ui/browser/ConflictResolutionSheet.h"
#include "ui/main/MainWindowView.h"
#include "ui/menu/MenuContent.h"
#include "ui/menu/StatusMenu.h"
#include "ui/settings/SettingsView.h"
#include "ui/transfer/TransferRow.h"
#include "ui/widgets/TextLabel.h"

#include <QPushButton>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

/// Every window in every language, as it opens, at its smallest size and somewhat larger.
class TextFitTest : public BrowserFixture, public testing::WithParamInterface<AppLanguage> {
protected:
    TextFitTest() {
        world.language.setSelectedLanguage(GetParam());
        theme.useLanguage(world.language.locale());
        world.automation.goOnline();
        settle();
    }

    Theme theme{*qApp};

    void settle() {
        world.automation.scheduler.settle();
        // Rows that come to stand one above the other ask their scroll area for room, and so on.
        for (int round = 0; round < 20; ++round)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void expectFit(const char* sight, QWidget& window) {
        settle();
        EXPECT_EQ(TextFit(window).faults().join('\n').toStdString(), "") << sight;
        EXPECT_EQ(CutTexts(window).texts().join('\n').toStdString(), "") << sight;
    }
    void expectFitInAllSizes(const char* sight, QWidget& window) {
        const QSize size = window.size();
        for (const QSize& one : {size, window.minimumSize(), size * 1.3}) {
            window.resize(one);
            expectFit(sight, window);
            EXPECT_TRUE(one != window.minimumSize() || window.size() == one)
                << sight << " does not get as small as it is to";
        }
        window.resize(size);
    }
    QWidget& openScene(const char* identifier) {
        scenes.open(QString::fromLatin1(identifier));
        settle();
        return *scenes.window(QString::fromLatin1(identifier));
    }
    NASConfig addShare(const QString& name, const MountState& state,
                       const QString& range = QStringLiteral("192.168.1.0/24")) {
        const NASConfig config = world.automation.add(name, range);
        std::optional<QUrl> mountPoint;
        if (state.kind() == Kind::mounted)
            mountPoint = QUrl::fromLocalFile("/mnt/" + name);
        world.automation.appState.updateStatus(config.id, state, mountPoint);
        return config;
    }
};

TEST_P(TextFitTest, WindowsOfFixedContents) {
    // One line for each window that shows all it has once it is open.
    for (const char* identifier : {"main", "about", "file-browser"})
        expectFitInAllSizes(identifier, openScene(identifier));
}

TEST_P(TextFitTest, SettingsPages) {
    auto& window = dynamic_cast<SettingsView&>(openScene("settings"));
    // The limit once it is chosen, and the rows that a clean-up brings.
    world.automation.defaults.set(CacheManager::maxCacheSizeKey, qint64(5'242'880'000));
    world.cacheDirectory.launchCleanup();
    ASSERT_TRUE(settleUntil([this] { return world.cacheDirectory.lastCleanupDate().has_value(); }));
    for (int page = 0; page < 6; ++page) {
        window.showTab(page);
        expectFitInAllSizes(qPrintable(QStringLiteral("settings, page %1").arg(page)), window);
    }
}

TEST_P(TextFitTest, MainWindow) {
    auto& window = dynamic_cast<MainWindowView&>(openScene("main"));
    const auto failed =
        MountState::failed(HarbrixError::authenticationFailed(QStringLiteral("No entry")));
    const NASConfig home = addShare("Home", Kind::mounted);
    addShare("Away", Kind::idle, "10.0.0.0/8");
    const NASConfig broken = addShare("Broken", failed);
    addShare("PC", failed);
    const NASConfig mounting = addShare("Going", Kind::mounting);
    addShare("Leaving", Kind::unmounting);
    addShare("Offline", Kind::offline);
    expectFitInAllSizes("folders", window);
    for (const NASConfig& share : {home, broken, mounting}) {
        window.setSelectedConfigID(share.id);
        expectFitInAllSizes(qPrintable("form of " + share.name), window);
    }
    window.setSelectedConfigID(broken.id);
    settle();
    auto* protocol = window.findChild<QComboBox*>("protocol");
    auto* strategy = window.findChild<QComboBox*>("bindingStrategy");
    ASSERT_TRUE(protocol && strategy);
    for (int row = 0; row < protocol->count(); ++row) {
        protocol->setCurrentIndex(row);
        for (int binding = 0; binding < strategy->count(); ++binding) {
            strategy->setCurrentIndex(binding);
            expectFitInAllSizes("form", window);
        }
    }
    QTest::mouseClick(window.findChild<QPushButton*>("testConnection"), Qt::LeftButton);
    expectFitInAllSizes("form with a test", window);
}

TEST_P(TextFitTest, QuestionOfAnotherNetwork) {
    auto& window = dynamic_cast<MainWindowView&>(openScene("main"));
    window.setSelectedConfigID(addShare("Away", Kind::idle, "10.0.0.0/8").id);
    settle();
    QTest::mouseClick(window.findChild<QPushButton*>("mount"), Qt::LeftButton);
    settle();
    auto* question = window.findChild<QWidget*>("networkMismatchAlert");
    ASSERT_TRUE(question);
    expectFit("question", *question);
    QTest::mouseClick(question->findChild<QPushButton*>("cancelMount"), Qt::LeftButton);
    settle();
}

TEST_P(TextFitTest, Menus) {
    StatusMenu menu(StatusMenu::ShownBy::Program);
    const auto fill = [&] {
        menu.setContent(menuContent(world.automation.store.configs(),
                                    world.automation.appState.nasStatuses(),
                                    world.recentFiles.recentFiles()));
        menu.ensurePolished();
        menu.resize(menu.sizeHint());
    };
    fill();
    expectFit("empty menu", menu);
    addShare("Home", Kind::mounted);
    addShare("Going", Kind::unmounting);
    fill();
    expectFit("menu", menu);
}

TEST_P(TextFitTest, BrowserWindow) {
    open();
    expectFitInAllSizes("empty folder", window());
    write(share("a.txt"), "hello");
    write(share("folder/b"), "");
    ASSERT_NO_FATAL_FAILURE(refresh());
    expectFitInAllSizes("files", window());
    TransferManager& transfers = view().transferManager();
    transfers.enqueueDownload(QUrl::fromLocalFile(share("a.txt")),
                              QUrl::fromLocalFile(local().chopped(1)));
    ASSERT_TRUE(waitForTransfers(1));
    expectFitInAllSizes("transfers", window());

    select(0);
    emit table().customContextMenuRequested(placeOf(0));
    settle();
    auto* menu = find("fileList").findChild<QMenu*>("rowMenu");
    ASSERT_TRUE(menu);
    expectFit("menu of a file", *menu);
    menu->close();

    ConflictResolutionSheet sheet({{}, {}, QUrl::fromLocalFile(share("a.txt")), false}, &window());
    sheet.setAttribute(Qt::WA_DeleteOnClose, false);
    sheet.show();
    expectFit("conflict", sheet);
    sheet.hide();
    view().quickLook().preview(QUrl::fromLocalFile(share("a.txt")));
    auto* panel = window().findChild<QWidget*>("previewPanel");
    ASSERT_TRUE(panel);
    ASSERT_TRUE(settleUntil([&] { return find("previewText").isVisible(); }));
    expectFit("preview", *panel);
}

TEST_P(TextFitTest, RowsOfTransfersInAllStates) {
    QWidget list;
    TransferRow row({}, &list);
    TransferTask task;
    task.id = QUuid::createUuid();
    task.sourceURL = QUrl::fromLocalFile("/mnt/Media/film.mp4");
    task.totalBytes = 4'000'000'000;
    task.bytesTransferred = 1'234'000'000;
    task.startDate = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
    const int narrowest = FileBrowserWindow::smallestHint.width();
    list.resize(narrowest, 100);
    row.resize(narrowest, 100);
    for (const auto status :
         {TransferStatus::pending, TransferStatus::running, TransferStatus::paused,
          TransferStatus::failed, TransferStatus::completed, TransferStatus::cancelled}) {
        task.status = status;
        row.setTask(task, QDateTime::fromSecsSinceEpoch(4'000, Qt::UTC), world.language.locale());
        expectFit("row", list);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryLanguage, TextFitTest,
                         testing::ValuesIn(std::next(allLanguages().begin()), allLanguages().end()),
                         [](const auto& language) {
                             return rawValue(language.param).remove('-').toStdString();
                         });

// What the others rely on.
TEST(TextFit, SeesWhatDoesNotFit) {
    QWidget window;
    window.resize(200, 100);
    auto* label = new QLabel("Somewhat longer", &window);
    auto* button = new QPushButton("Somewhat longer", &window);
    auto* field = new QLineEdit(&window);
    auto* picker = new QComboBox(&window);
    field->setPlaceholderText("Somewhat longer");
    picker->addItems({"x", "Somewhat longer"});
    const QList<QWidget*> widgets{label, button, field, picker};
    for (QWidget* widget : widgets)
        widget->setGeometry(0, 0, 180, 40);
    EXPECT_EQ(TextFit(window).faults().join('\n').toStdString(), "");
    for (QWidget* widget : widgets) {
        widget->setGeometry(0, 0, 50, 40);
        EXPECT_EQ(TextFit(window).faults().size(), 1) << widget->metaObject()->className();
        widget->setGeometry(150, 0, 180, 40);
        EXPECT_EQ(TextFit(window).faults().size(), 1) << widget->metaObject()->className();
        widget->setGeometry(0, 0, 180, 40);
    }
    label->setWordWrap(true);
    label->setGeometry(0, 0, 80, 16);
    EXPECT_EQ(TextFit(window).faults().size(), 1) << "the second line is out of sight";
    label->setGeometry(0, 0, 80, 60);
    EXPECT_EQ(TextFit(window).faults().size(), 0);

    TextLabel cut(TextRole::body, Tint::primary, TextLabel::Lines::One, &window);
    cut.setText("Somewhat longer");
    cut.setGeometry(0, 50, 50, 40);
    EXPECT_EQ(CutTexts(window).texts().size(), 1);
}

} // namespace
} // namespace harbrix
