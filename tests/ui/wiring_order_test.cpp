// The order in which the layout connects and disconnects its handlers.

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <ostream>
#include <vector>

#include "tests/ui/sources.h"

namespace {

/// A connection made or removed: where the event is caught, and who handles it.
struct Step {
    const wxEvtHandler* source;
    int id;
    wxEventType type;
    const wxEvtHandler* sink;
    const wxObject* userData;
    bool done = true;  ///< there was such a connection to remove
    bool operator==(const Step&) const = default;
};

void PrintTo(const Step& step, std::ostream* out) {
    *out << "source " << step.source << " id " << step.id << " type " << step.type
         << (step.done ? "" : " in vain");
}

std::vector<Step> made;
std::vector<Step> removed;

/// The toolkit's own function behind the one of this file.
template <typename Function>
Function toolkits(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// These two stand in front of the toolkit's functions, to which every Connect and Disconnect leads.

void wxEvtHandler::DoBind(int id, int lastId, wxEventType type, wxEventFunctor* functor,
                          wxObject* userData) {
    made.push_back({this, id, type, functor->GetEvtHandler(), userData});
    using Function = void (*)(wxEvtHandler*, int, int, wxEventType, wxEventFunctor*, wxObject*);
    static const auto bind =
        toolkits<Function>("_ZN12wxEvtHandler6DoBindEiiiP14wxEventFunctorP8wxObject");
    bind(this, id, lastId, type, functor, userData);
}

bool wxEvtHandler::DoUnbind(int id, int lastId, wxEventType type, const wxEventFunctor& functor,
                            wxObject* userData) {
    using Function =
        bool (*)(wxEvtHandler*, int, int, wxEventType, const wxEventFunctor&, wxObject*);
    static const auto unbind =
        toolkits<Function>("_ZN12wxEvtHandler8DoUnbindEiiiRK14wxEventFunctorP8wxObject");
    const bool done = unbind(this, id, lastId, type, functor, userData);
    removed.push_back({this, id, type, functor.GetEvtHandler(), userData, done});
    return done;
}

namespace {

/// The 47 connections of the window, in the order of the table of sources.
std::vector<Step> stepsOf(MainFrameBaseClass& frame) {
    std::vector<Step> steps;
    for (const support::Source& source : support::Sources) {
        std::visit(
            [&](auto member) {
                auto& object = support::in(frame, member);
                if constexpr (std::is_same_v<decltype(object), wxMenuItem&>) {
                    steps.push_back({&frame, object.GetId(), source.type(), &frame, nullptr});
                } else {
                    steps.push_back({&object, wxID_ANY, source.type(), &frame, nullptr});
                }
            },
            source.member);
    }
    return steps;
}

/// Those steps whose events the frame handles, the toolkit's own aside.
std::vector<Step> handledBy(const wxEvtHandler* frame, const std::vector<Step>& steps) {
    std::vector<Step> own;
    for (const Step& step : steps) {
        const bool isOurs = step.type == wxEVT_MENU || step.type == wxEVT_RADIOBUTTON ||
                            step.type == wxEVT_CHECKBOX || step.type == wxEVT_CHOICE ||
                            step.type == wxEVT_BUTTON || step.type == wxEVT_SCROLL_THUMBTRACK ||
                            step.type == wxEVT_SCROLL_CHANGED;
        if (isOurs && step.sink == frame) {
            own.push_back(step);
        }
    }
    return own;
}

TEST(WiringOrder, ConnectsInTheOrderOfTheSourcesWithoutUserData) {
    made.clear();
    MainFrameBaseClass frame(nullptr);
    EXPECT_EQ(handledBy(&frame, made), stepsOf(frame));
}

TEST(WiringOrder, DisconnectsInTheSameOrderAndNotInReverse) {
    auto* const frame = new MainFrameBaseClass(nullptr);
    const std::vector<Step> steps = stepsOf(*frame);
    removed.clear();
    delete frame;
    EXPECT_EQ(handledBy(frame, removed), steps);
}

}  // namespace
