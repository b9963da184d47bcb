#include "simulator/window/state_panel.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

#include "accessibility/accessibility.h"

namespace simulator {

namespace {

constexpr int Style = wxDV_SINGLE | wxDV_ROW_LINES;

wxSizer* withTitle(wxWindow& parent, WordTable& table) {
    auto* const column = new wxBoxSizer(wxVERTICAL);
    auto* const title = new wxStaticText(&parent, wxID_ANY, table.GetName());
    accessibility::setCaptionOf(*title, &table);
    column->Add(title, wxSizerFlags());
    column->Add(&table, wxSizerFlags(1).Expand().Border(wxTOP, parent.FromDIP(2)));
    return column;
}

wxVector<wxVariant> cells(const Row& row) {
    wxVector<wxVariant> values;
    for (const std::string& cell : row) {
        values.push_back(wxString::FromUTF8(cell));
    }
    return values;
}

}  // namespace

WordTable::WordTable(wxWindow* parent, const wxString& name)
    : wxDataViewListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, Style) {
    SetName(name);
    accessibility::setName(*this, name);
}

void WordTable::addColumn(const wxString& title, int width) {
    wxDataViewColumn* const column = AppendTextColumn(title, wxDATAVIEW_CELL_INERT, FromDIP(width),
                                                      wxALIGN_LEFT, wxDATAVIEW_COL_RESIZABLE);
    column->GetRenderer()->EnableEllipsize(wxELLIPSIZE_END);
}

void WordTable::show(const std::vector<Row>& rows) {
    for (std::size_t i = rows_.size(); i > rows.size(); --i) {
        DeleteItem(static_cast<unsigned>(i - 1));
    }
    const std::size_t kept = std::min(rows_.size(), rows.size());
    for (std::size_t row = 0; row < kept; ++row) {
        for (std::size_t column = 0; column < rows[row].size(); ++column) {
            if (rows[row][column] != rows_[row][column]) {
                SetTextValue(wxString::FromUTF8(rows[row][column]), static_cast<unsigned>(row),
                             static_cast<unsigned>(column));
            }
        }
    }
    for (std::size_t row = kept; row < rows.size(); ++row) {
        AppendItem(cells(rows[row]));
    }
    rows_ = rows;
}

StatePanel::StatePanel(wxWindow* parent)
    : wxPanel(parent),
      settings(new WordTable(this, "Settings")),
      files(new WordTable(this, "Files received")),
      commands(new WordTable(this, "Last commands")) {
    settings->addColumn("Setting", 120);
    settings->addColumn("In use", 150);
    settings->addColumn("After a restart", 150);
    files->addColumn("Name", 270);
    files->addColumn("Size", 120);
    commands->addColumn("Command", 230);
    commands->addColumn("In a row", 80);
    settings->SetMinSize(FromDIP(wxSize(430, 165)));
    files->SetMinSize(FromDIP(wxSize(430, 80)));
    commands->SetMinSize(FromDIP(wxSize(320, 100)));

    const int gap = FromDIP(8);
    auto* const left = new wxBoxSizer(wxVERTICAL);
    left->Add(withTitle(*this, *settings), wxSizerFlags().Expand());
    left->Add(withTitle(*this, *files), wxSizerFlags(1).Expand().Border(wxTOP, gap));
    auto* const columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(left, wxSizerFlags(4).Expand().Border(wxRIGHT, gap));
    columns->Add(withTitle(*this, *commands), wxSizerFlags(3).Expand());
    auto* const all = new wxBoxSizer(wxVERTICAL);
    all->Add(columns, wxSizerFlags(1).Expand().Border(wxALL, gap));
    SetSizerAndFit(all);
}

}  // namespace simulator
