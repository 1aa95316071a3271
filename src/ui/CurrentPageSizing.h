#pragma once

class QStackedWidget;
class QTabWidget;

/// Makes a stack of pages (or a tab widget's pages) ask only for the room its current page needs. By
/// default a stack claims the largest minimum size of all its pages, so a wide page that is not even
/// shown would squeeze or cut whatever sits beside the stack.
void sizeToCurrentPage(QStackedWidget& pages);
void sizeToCurrentPage(QTabWidget& tabs);
