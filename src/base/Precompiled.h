#pragma once

// The headers that nearly every file of src/ pulls in; all rooms share one precompiled copy.

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUuid>

#include <chrono>
#include <coroutine>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>
