#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

class AppState;

/// A list that shows a part of the application's state, and the texts that go with it. Main thread
/// only.
class StateListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(
        Zorvane::AppState* appState READ appState WRITE setAppState NOTIFY appStateChanged REQUIRED)
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] AppState* appState() const { return m_appState; }
    void setAppState(AppState* appState);

signals:
    void appStateChanged();
    /// One of the texts may be another, or a row.
    void changed();

protected:
    /// Connects the model to the state that it was just given, and fills it.
    virtual void follow(AppState& appState) = 0;

private:
    AppState* m_appState = nullptr;
};

} // namespace Zorvane
