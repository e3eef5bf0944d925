#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

class AppState;

/// The single texts and switches that the main screens show, formatted in the locale. Main thread
/// only.
class Figures : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        Zorvane::AppState* appState READ appState WRITE setAppState NOTIFY appStateChanged REQUIRED)
    Q_PROPERTY(QString userName READ userName NOTIFY appStateChanged)
    Q_PROPERTY(QString bytesFoundText READ bytesFoundText NOTIFY bytesFoundChanged)
    /// What the running scan is at.
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    Q_PROPERTY(bool hasSelectedBytes READ hasSelectedBytes NOTIFY selectionChanged)
    Q_PROPERTY(bool canClean READ canClean NOTIFY canCleanChanged)
public:
    explicit Figures(QObject* parent = nullptr);

    [[nodiscard]] AppState* appState() const { return m_appState; }
    void setAppState(AppState* appState);

    [[nodiscard]] QString userName() const;
    [[nodiscard]] QString bytesFoundText() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] bool hasSelectedBytes() const;
    [[nodiscard]] bool canClean() const;

signals:
    void appStateChanged();
    void bytesFoundChanged();
    void statusChanged();
    void selectionChanged();
    void canCleanChanged();

private:
    void refreshSelection();

    AppState* m_appState = nullptr;
    /// Summed up once for each change of the selection.
    std::int64_t m_selectedBytes = 0;
};

} // namespace Zorvane
