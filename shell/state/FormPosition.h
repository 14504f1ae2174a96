#pragma once
// Where frmMain and frmToDo stood when they were closed, and where they stand again.

#include <QSize>
#include <QString>

class QWidget;

namespace vardelin {

class Settings;

// All in twips.
struct FormPosition
{
    int left = 0, top = 0, width = 0, height = 0;
    bool operator==(const FormPosition &) const = default;
};

// Where a form goes. stored: "Left, Top, Width, Height", or empty; screen: its size in twips. Without a
// stored position, or with one that reaches beyond the right or lower edge, the form takes half the screen
// each way and stands in its middle.
FormPosition positionFor(const QString &stored, QSize screen);

QString positionText(const FormPosition &position);

// tag: the form's key in the section FormPosition.
void LoadFormPosition(QWidget &form, const QString &tag, const Settings &settings);
void SaveFormPosition(const QWidget &form, const QString &tag, Settings &settings);

} // namespace vardelin
