#pragma once

#include "Zorvane/State/Models/ConfirmationModel.h"
#include "Zorvane/State/Models/Figures.h"
#include "Zorvane/State/Models/ICloudModel.h"
#include "Zorvane/State/Models/ReportModel.h"
#include "Zorvane/State/Models/ResultsModel.h"
#include "Zorvane/State/Models/SummaryModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

/// The models of one application state, which outlives them. Main thread only.
class Models : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the only one.")
    Q_PROPERTY(Zorvane::Figures* figures READ figures CONSTANT)
    Q_PROPERTY(Zorvane::ResultsModel* results READ results CONSTANT)
    Q_PROPERTY(Zorvane::SummaryModel* summary READ summary CONSTANT)
    Q_PROPERTY(Zorvane::ConfirmationModel* confirmation READ confirmation CONSTANT)
    Q_PROPERTY(Zorvane::ReportModel* report READ report CONSTANT)
    Q_PROPERTY(Zorvane::ICloudModel* icloud READ icloud CONSTANT)
public:
    explicit Models(AppState& state);

    [[nodiscard]] Figures* figures() { return &m_figures; }
    [[nodiscard]] ResultsModel* results() { return &m_results; }
    [[nodiscard]] SummaryModel* summary() { return &m_summary; }
    [[nodiscard]] ConfirmationModel* confirmation() { return &m_confirmation; }
    [[nodiscard]] ReportModel* report() { return &m_report; }
    [[nodiscard]] ICloudModel* icloud() { return &m_icloud; }

private:
    Figures m_figures;
    ResultsModel m_results;
    SummaryModel m_summary;
    ConfirmationModel m_confirmation;
    ReportModel m_report;
    ICloudModel m_icloud;
};

} // namespace Zorvane
