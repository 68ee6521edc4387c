// Small helpers that the form classes share.
#pragma once

class QObject;
class QTreeWidget;

namespace FormSupport {

// Registers the pictures compiled into the forms library. The library is
// static, so its resource object is linked in only when something refers to
// it; every form calls this before it builds its widgets.
void EnsureResources();

// Gives the form its object name when the caller passed one; a null or empty
// name keeps the name that the Designer file set.
void ApplyObjectName(QObject* form, const char* name);

// A list view shows its rows sorted by column 0, ascending, and the order of
// entries that are walked from top to bottom follows that shown order.
// Switching sorting on alone sorts descending (the header's default
// indicator), so the order is set explicitly.
void SortByFirstColumn(QTreeWidget* list);

} // namespace FormSupport
