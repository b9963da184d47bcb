// Prints what a screen reader is told of a running program, a line for each control:
//
//   role "name" (description), label-for -> role "name"
//
// What is hidden is left out. print_accessible_tree NAME_OF_THE_PROGRAM [--focused]; the latter:
// only what has the focus. Waits until the program's window is there.

#include <atspi/atspi.h>

#include <chrono>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Accessible = std::unique_ptr<AtspiAccessible, Unref>;

std::string taken(gchar* text) {
    std::string copy = text != nullptr ? text : "";
    g_free(text);
    return copy;
}

std::string described(AtspiAccessible* object) {
    return taken(atspi_accessible_get_role_name(object, nullptr)) + " \"" +
           taken(atspi_accessible_get_name(object, nullptr)) + "\"";
}

std::string captionOf(AtspiAccessible* object) {
    std::string text;
    GArray* const relations = atspi_accessible_get_relation_set(object, nullptr);
    for (guint i = 0; relations != nullptr && i < relations->len; ++i) {
        AtspiRelation* const relation = g_array_index(relations, AtspiRelation*, i);
        if (atspi_relation_get_relation_type(relation) == ATSPI_RELATION_LABEL_FOR) {
            const Accessible target(atspi_relation_get_target(relation, 0));
            text += ", label-for -> " + described(target.get());
        }
        g_object_unref(relation);
    }
    if (relations != nullptr) {
        g_array_free(relations, TRUE);
    }
    return text;
}

bool is(AtspiAccessible* object, AtspiStateType state) {
    AtspiStateSet* const states = atspi_accessible_get_state_set(object);
    const bool contained = atspi_state_set_contains(states, state) != FALSE;
    g_object_unref(states);
    return contained;
}

void print(AtspiAccessible* object, bool focusedOnly) {
    const std::string more = taken(atspi_accessible_get_description(object, nullptr));
    if (!focusedOnly || is(object, ATSPI_STATE_FOCUSED)) {
        std::cout << described(object) << (more.empty() ? "" : " (" + more + ")")
                  << captionOf(object) << '\n';
    }
    const gint children = atspi_accessible_get_child_count(object, nullptr);
    for (gint i = 0; i < children; ++i) {
        if (const Accessible child{atspi_accessible_get_child_at_index(object, i, nullptr)};
            child && is(child.get(), ATSPI_STATE_VISIBLE)) {
            print(child.get(), focusedOnly);
        }
    }
}

/// The program, once it has a window; null until then.
Accessible find(const std::string& name) {
    const Accessible desktop(atspi_get_desktop(0));
    const gint programs = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (gint i = 0; i < programs; ++i) {
        Accessible program(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (program && taken(atspi_accessible_get_name(program.get(), nullptr)) == name &&
            atspi_accessible_get_child_count(program.get(), nullptr) > 0) {
            return program;
        }
    }
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    const bool understood = argc == 2 || (argc == 3 && std::string(argv[2]) == "--focused");
    if (!understood || atspi_init() != 0) {
        std::cerr << "usage: print_accessible_tree NAME [--focused], with an accessibility bus\n";
        return 2;
    }
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (std::chrono::steady_clock::now() < deadline) {
        if (const Accessible program = find(argv[1])) {
            print(program.get(), argc == 3);
            return 0;
        }
        std::this_thread::sleep_for(50ms);
    }
    std::cerr << "no window of " << argv[1] << " on the accessibility bus\n";
    return 1;
}
