#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <cstdint>

namespace Zorvane {

class AppState;

/// The single texts and switches of the main screens, formatted in the locale. Main thread only.
class Figures : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Models has one.")
    Q_PROPERTY(QString userName READ userName CONSTANT)
    Q_PROPERTY(QString bytesFoundText READ bytesFoundText NOTIFY bytesFoundChanged)
    /// The area that the running scan has reached.
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    Q_PROPERTY(bool hasSelectedBytes READ hasSelectedBytes NOTIFY selectionChanged)
    Q_PROPERTY(bool canClean READ canClean NOTIFY selectionChanged)
public:
    explicit Figures(const AppState& state);

    [[nodiscard]] QString userName() const;
    [[nodiscard]] QString bytesFoundText() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] bool hasSelectedBytes() const { return m_selectedBytes != 0; }
    [[nodiscard]] bool canClean() const;

signals:
    void bytesFoundChanged();
    void statusChanged();
    /// The selection, or whether it can be cleaned now.
    void selectionChanged();

private:
    void updateSelection();

    const AppState& m_state;
    /// Added up once for each change of the selection.
    std::int64_t m_selectedBytes = 0;
};

} // namespace Zorvane
