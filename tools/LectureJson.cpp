#include "LectureJson.h"

#include <iterator>

namespace outil {

namespace {

// Keeps the position of the parser.
struct IterateurDeLignes {
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    const char* courant;
    PositionJson* position;

    reference operator*() const { return *courant; }
    IterateurDeLignes& operator++() {
        position->dernier = *courant++;
        position->ligne += position->dernier == '\n';
        return *this;
    }
    bool operator==(const IterateurDeLignes& autre) const { return courant == autre.courant; }
    bool operator!=(const IterateurDeLignes& autre) const { return courant != autre.courant; }
};

}  // namespace

void LisJson(std::string_view texte, PositionJson& position, LecteurJson& lecteur) {
    nlohmann::json::sax_parse(IterateurDeLignes{texte.data(), &position},
                              IterateurDeLignes{texte.data() + texte.size(), &position}, &lecteur);
}

}  // namespace outil
