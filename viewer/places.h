#ifndef LUMADOT_VIEWER_PLACES_H
#define LUMADOT_VIEWER_PLACES_H

#include <wx/dataview.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "recording/damage.h"
#include "viewer/followed.h"
#include "viewer/survey.h"

namespace viewer {

/// The damaged places and the gaps of a recording.
struct Places {
    std::vector<recording::Damage> damages;
    std::vector<Gap> gaps;

    std::size_t size() const { return damages.size() + gaps.size(); }

    /// What is known now.
    static Places of(Followed& followed);

    /// The frame to look at for row `row`: the one before a gap, the first one that does not lie
    /// before a damaged place. Nothing when there is none.
    std::optional<std::uint64_t> frameAt(std::size_t row, Followed& followed) const;
};

/// A table of them, however many there are.
class PlaceTable : public wxDataViewCtrl {
public:
    explicit PlaceTable(wxWindow* parent);

    void show(Places places);
    const Places& places() const;
    /// The row that is selected.
    std::optional<std::size_t> selected() const;
    void select(std::size_t row);
    /// A cell as it is shown.
    wxString cell(std::size_t row, unsigned column) const;

private:
    class Model;

    Model* model_;
};

}  // namespace viewer

#endif
