#include "viewer/places.h"

#include <string>
#include <utility>

#include "accessibility/accessibility.h"
#include "viewer/words.h"

namespace viewer {

namespace {

enum Column : unsigned { Kind, Where, What };

/// The first frame that does not lie before this byte.
std::optional<std::uint64_t> frameBehind(recording::Recording& recording, std::uint64_t offset) {
    std::uint64_t low = 0;
    std::uint64_t high = recording.frames();
    recording::Frame frame;
    while (low < high) {
        const std::uint64_t middle = low + (high - low) / 2;
        recording.read(middle, frame);
        if (frame.offset < offset) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    if (recording.frames() == 0) {
        return std::nullopt;
    }
    return std::min(low, recording.frames() - 1);
}

}  // namespace

Places Places::of(Followed& followed) {
    return followed.useSurvey([](const auto& recording, const Survey& survey) {
        return Places{recording.damages(), survey.gaps()};
    });
}

std::optional<std::uint64_t> Places::frameAt(std::size_t row, Followed& followed) const {
    if (row >= damages.size()) {
        return row < size() ? std::optional(gaps[row - damages.size()].after) : std::nullopt;
    }
    try {
        return followed.use(
            [&](auto& recording) { return frameBehind(recording, damages[row].offset); });
    } catch (const std::exception&) {
        return std::nullopt;  // Showing a frame there would say why.
    }
}

/// The rows are made when they are looked at.
class PlaceTable::Model : public wxDataViewVirtualListModel {
public:
    void GetValueByRow(wxVariant& value, unsigned row, unsigned column) const override {
        value = wxString::FromUTF8(textOf(row, column));
    }
    bool SetValueByRow(const wxVariant& /*value*/, unsigned /*row*/, unsigned /*column*/) override {
        return false;
    }

    Places places;

private:
    std::string textOf(std::size_t row, unsigned column) const {
        if (row >= places.size()) {
            return "";
        }
        if (row < places.damages.size()) {
            const recording::Damage& damage = places.damages[row];
            return column == Kind    ? "Damaged"
                   : column == Where ? "Byte " + std::to_string(damage.offset)
                                     : reasonOf(damage);
        }
        const Gap& gap = places.gaps[row - places.damages.size()];
        return column == Kind    ? "Gap"
               : column == Where ? "After frame " + std::to_string(gap.after)
                                 : words::gap(gap);
    }
};

PlaceTable::PlaceTable(wxWindow* parent)
    : wxDataViewCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                     wxDV_SINGLE | wxDV_ROW_LINES),
      model_(new Model) {
    AssociateModel(model_);
    model_->DecRef();
    const auto add = [this](const char* title, Column column, int width) {
        AppendTextColumn(title, column, wxDATAVIEW_CELL_INERT, FromDIP(width), wxALIGN_LEFT,
                         wxDATAVIEW_COL_RESIZABLE);
    };
    add("Kind", Kind, 90);
    add("Where", Where, 150);
    add("What", What, 400);
    accessibility::setName(*this, "Damaged places and gaps");
}

void PlaceTable::show(Places places) {
    model_->places = std::move(places);
    model_->Reset(static_cast<unsigned>(model_->places.size()));
}

const Places& PlaceTable::places() const { return model_->places; }

std::optional<std::size_t> PlaceTable::selected() const {
    const wxDataViewItem item = GetSelection();
    return item.IsOk() ? std::optional<std::size_t>(model_->GetRow(item)) : std::nullopt;
}

void PlaceTable::select(std::size_t row) {
    const wxDataViewItem item = model_->GetItem(static_cast<unsigned>(row));
    Select(item);
    EnsureVisible(item);
}

wxString PlaceTable::cell(std::size_t row, unsigned column) const {
    wxVariant value;
    model_->GetValueByRow(value, static_cast<unsigned>(row), column);
    return value.GetString();
}

}  // namespace viewer
