#pragma once

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// Where the terms of service and the privacy policy are: at the addresses that were fixed at build
/// time, or on pages that come with the application.
class LegalPages : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QUrl termsURL READ termsURL CONSTANT)
    Q_PROPERTY(QUrl privacyURL READ privacyURL CONSTANT)
public:
    using QObject::QObject;

    [[nodiscard]] static QUrl termsURL();
    [[nodiscard]] static QUrl privacyURL();
};

} // namespace Zorvane
