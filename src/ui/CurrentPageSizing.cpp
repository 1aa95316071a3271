#include "CurrentPageSizing.h"

#include <QSizePolicy>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVariant>

namespace
{
// The page's own policy, kept while it is set aside.
constexpr char ownPolicyProperty[] = "tarnwickOwnSizePolicy";

void setAside(QWidget& page)
{
    if (!page.property(ownPolicyProperty).isValid())
        page.setProperty(ownPolicyProperty, QVariant::fromValue(page.sizePolicy()));
    // An ignored page adds nothing to the stack's minimum size.
    page.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void bringBack(QWidget& page)
{
    const QVariant own = page.property(ownPolicyProperty);
    if (own.isValid())
        page.setSizePolicy(own.value<QSizePolicy>());
}

template<typename Pages> void sizeToCurrent(Pages& pages)
{
    for (int i = 0; i < pages.count(); ++i) {
        QWidget* page = pages.widget(i);
        if (page == pages.currentWidget())
            bringBack(*page);
        else
            setAside(*page);
    }
    pages.updateGeometry();
}
} // namespace

void sizeToCurrentPage(QStackedWidget& pages)
{
    QObject::connect(&pages, &QStackedWidget::currentChanged, &pages, [&pages] { sizeToCurrent(pages); });
    sizeToCurrent(pages);
}

void sizeToCurrentPage(QTabWidget& tabs)
{
    QObject::connect(&tabs, &QTabWidget::currentChanged, &tabs, [&tabs] { sizeToCurrent(tabs); });
    sizeToCurrent(tabs);
}
