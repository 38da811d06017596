// SPDX-License-Identifier: MIT
#include "folderpicker/frmPlaces.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "folderpicker/places.h"

namespace vantrell {

namespace {

std::string textOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

std::string textIn(QStandardPaths::StandardLocation where, const char* name) {
    return textOf(QStandardPaths::writableLocation(where) + QLatin1String(name));
}

}  // namespace

QList<QUrl> sidebarPlaces(const FileToolbox& toolbox) {
    QList<QUrl> places{QUrl(QStringLiteral("file:")), QUrl::fromLocalFile(QDir::homePath())};
    const auto add = [&](const std::vector<Path>& folders) {
        for (const Path& folder : folders) {
            const QUrl url = QUrl::fromLocalFile(QFile::decodeName(QByteArray::fromStdString(folder)));
            if (!places.contains(url) && toolbox.isFolder(folder)) places.append(url);
        }
    };
    add(disksIn(textOf(QStringLiteral("/proc/self/mountinfo"))));
    add(bookmarksIn(textIn(QStandardPaths::GenericConfigLocation, "/gtk-3.0/bookmarks")));
    add(bookmarksIn(textIn(QStandardPaths::GenericDataLocation, "/user-places.xbel")));
    return places;
}

}  // namespace vantrell
