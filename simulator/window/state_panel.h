#ifndef LUMADOT_SIMULATOR_WINDOW_STATE_PANEL_H
#define LUMADOT_SIMULATOR_WINDOW_STATE_PANEL_H

#include <wx/dataview.h>
#include <wx/panel.h>

#include <vector>

#include "simulator/window/words.h"

namespace simulator {

/// A table of words that changes only where its rows do, so that a selection stays.
class WordTable : public wxDataViewListCtrl {
public:
    WordTable(wxWindow* parent, const wxString& name);

    /// `width` in pixels that do not depend on the screen.
    void addColumn(const wxString& title, int width);
    void show(const std::vector<Row>& rows);

private:
    std::vector<Row> rows_;
};

/// What the controller holds: settings, files, last commands.
class StatePanel : public wxPanel {
public:
    explicit StatePanel(wxWindow* parent);

    WordTable* const settings;
    WordTable* const files;
    WordTable* const commands;
};

}  // namespace simulator

#endif
