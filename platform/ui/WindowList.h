#pragma once
// The loaded windows in their order of loading: the platform's Forms collection.

#include <QPointer>
#include <QWidget>
#include <vector>

namespace vardelin {

class WindowList
{
public:
    // A window enters when it is loaded and leaves when it is destroyed or unloaded.
    void add(QWidget *window);
    void remove(QWidget *window);
    int Count() const;
    QWidget *at(int index) const;                     // from 0; null beyond the end
    int indexOfCaption(const QString &caption) const; // Count() where there is none
    static bool isMdiChild(const QWidget *window);

private:
    QList<QWidget *> loaded() const;

    std::vector<QPointer<QWidget>> m_windows;
};

} // namespace vardelin
