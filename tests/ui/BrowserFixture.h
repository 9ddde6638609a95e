#pragma once

#include "files/FileUrl.h"
#include "support/UiWorld.h"
#include "support/WaitUntil.h"
#include "ui/WindowScenes.h"
#include "ui/browser/FileBrowserView.h"
#include "ui/browser/FileBrowserWindow.h"
#include "ui/browser/FileListView.h"

#include <QAbstractButton>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTableView>
#include <QTest>

namespace harbrix {

/// The browser window over a folder that stands in for a mounted share.
class BrowserFixture : public testing::Test {
protected:
    BrowserFixture() {
        world.language.setSelectedLanguage(AppLanguage::english);
        QDir(root()).mkpath("share");
        QDir(root()).mkpath("local");
        config.name = "Media";
    }

    [[nodiscard]] QString root() const { return world.directory.path(); }
    [[nodiscard]] QString share(const QString& name = {}) const {
        return root() + "/share/" + name;
    }
    [[nodiscard]] QString local(const QString& name = {}) const {
        return root() + "/local/" + name;
    }
    static void write(const QString& path, const QByteArray& contents) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly)) << path.toStdString();
        ASSERT_EQ(file.write(contents), contents.size());
    }
    static std::optional<QByteArray> read(const QString& path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
    }

    /// Lets everything go on, workers included, until the condition holds.
    [[nodiscard]] bool settleUntil(const std::function<bool()>& condition) {
        return waitUntil([&] {
            world.automation.scheduler.advance(Seconds(0));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return condition();
        });
    }
    void open() {
        world.browserState.show(config, QUrl::fromLocalFile(share().chopped(1)));
        scenes.open("file-browser");
        ASSERT_TRUE(settleUntil([this] { return !view().fsManager().isLoading(); }));
    }
    void refresh() {
        click("refresh");
        ASSERT_TRUE(settleUntil([this] { return !view().fsManager().isLoading(); }));
    }
    [[nodiscard]] FileBrowserWindow& window() {
        return *qobject_cast<FileBrowserWindow*>(scenes.window("file-browser"));
    }
    [[nodiscard]] FileBrowserView& view() { return *window().view(); }
    [[nodiscard]] const std::vector<TransferTask>& tasks() {
        return view().transferManager().tasks();
    }
    template <typename Widget = QWidget>
    Widget& find(const char* name) {
        auto* widget = window().findChild<Widget*>(name);
        if (!widget)
            qFatal("no %s", name);
        return *widget;
    }
    [[nodiscard]] bool exists(const char* name) {
        return window().findChild<QObject*>(name) != nullptr;
    }
    void click(const char* name) {
        QTest::mouseClick(&find(name), Qt::LeftButton);
        world.automation.scheduler.settle();
    }
    QTableView& table() { return find<QTableView>("fileTable"); }
    [[nodiscard]] QStringList names() {
        QStringList names;
        for (int row = 0; row < table().model()->rowCount(); ++row)
            names << table().model()->index(row, 0).data().toString();
        return names;
    }
    [[nodiscard]] QPoint placeOf(int row) {
        return table().visualRect(table().model()->index(row, 0)).center();
    }
    void select(int row, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, keys, placeOf(row));
    }
    void doubleClick(int row) {
        select(row);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, placeOf(row));
        world.automation.scheduler.settle();
    }
    void drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(&find("fileList"), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(50, 50), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&find("fileList"), &event);
        EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    }
    [[nodiscard]] bool waitForTransfers(std::size_t count) {
        return settleUntil([this, count] {
            return tasks().size() == count && !view().transferManager().isProcessing();
        });
    }

    UiWorld world;
    NASConfig config = NASConfig::blank();
    WindowScenes scenes{world.environment};
};

} // namespace harbrix
