#ifndef LUMADOT_TESTS_SUPPORT_ABOUT_BOX_H
#define LUMADOT_TESTS_SUPPORT_ABOUT_BOX_H

#include <string>
#include <vector>

namespace support {

/// The native About boxes that are on the screen. They are not modal: the event loop goes on.
class AboutBoxes {
public:
    AboutBoxes();
    ~AboutBoxes() { close(); }
    AboutBoxes(const AboutBoxes&) = delete;
    AboutBoxes& operator=(const AboutBoxes&) = delete;

    std::size_t count() const { return boxes_.size(); }

    /// What the only box shows under this GTK property, as "program-name"; empty if not set.
    std::string text(const char* property) const;
    /// Whether the only box shows no name under this GTK property, as "authors".
    bool hasNobody(const char* property) const;
    /// Whether the only box has a logo of its own.
    bool hasLogo() const;

    void close();

private:
    std::vector<void*> boxes_;
};

}  // namespace support

#endif
