#include "Csv.h"

#include <algorithm>
#include <cstring>

namespace outil {

namespace {

constexpr std::size_t nTampon = 1 << 18, aucune = static_cast<std::size_t>(-1);
constexpr std::string_view marque = "\xEF\xBB\xBF";  // byte order mark, UTF-8

char SeparateurDe(std::string_view premiereLigne) {
    bool entreGuillemets = false;
    for (const char c : premiereLigne) {
        if (c == '"') entreGuillemets = !entreGuillemets;
        if (entreGuillemets) continue;
        if (c == ',' || c == ';' || c == '\t') return c;
        if (c == '\n') break;
    }
    return ',';
}

}  // namespace

LecteurCsv::LecteurCsv(std::istream& entree, std::optional<char> separateur) : m_entree(entree), m_tampon(nTampon) {
    Remplit();
    if (std::string_view(m_tampon.data(), m_fin).starts_with(marque)) {
        m_debut = m_vu = marque.size();
        m_octets = static_cast<std::int64_t>(marque.size());
    }
    m_separateur = separateur ? *separateur : SeparateurDe({m_tampon.data() + m_debut, m_fin - m_debut});
}

bool LecteurCsv::Suivant(std::vector<std::string_view>& champs) {
    for (;;) {
        std::size_t fin = FinDEnregistrement();
        while (fin == aucune && Remplit()) fin = FinDEnregistrement();
        if (fin == aucune && m_debut == m_fin) return false;
        m_complet = fin != aucune;
        if (!m_complet) fin = m_fin;
        const std::size_t debut = m_debut, suivant = fin + m_complet;
        m_octets += static_cast<std::int64_t>(suivant - debut);
        m_debut = m_vu = suivant;
        m_entreGuillemets = false;
        if (fin > debut && m_tampon[fin - 1] == '\r') --fin;
        if (fin == debut) continue;  // an empty line
        champs.clear();
        char* const texte = m_tampon.data() + debut;
        if (std::memchr(texte, '"', fin - debut)) {
            DecoupeAvecGuillemets(texte, m_tampon.data() + fin, champs);
        } else {
            const char* champ = texte;
            const char* const bout = m_tampon.data() + fin;
            for (const char* c = texte; c != bout; ++c) {
                if (*c != m_separateur) continue;
                champs.emplace_back(champ, static_cast<std::size_t>(c - champ));
                champ = c + 1;
            }
            champs.emplace_back(champ, static_cast<std::size_t>(bout - champ));
        }
        return true;
    }
}

// The place of the line end that closes the record; none when the buffer does not hold it yet.
std::size_t LecteurCsv::FinDEnregistrement() {
    const char* const tampon = m_tampon.data();
    while (m_vu < m_fin) {
        const void* const trouvee = std::memchr(tampon + m_vu, '\n', m_fin - m_vu);
        const char* const ligne = trouvee ? static_cast<const char*>(trouvee) : tampon + m_fin;
        // An odd number of quotes opens a field, or closes it.
        for (const char* c = tampon + m_vu;
             (c = static_cast<const char*>(std::memchr(c, '"', static_cast<std::size_t>(ligne - c)))); ++c)
            m_entreGuillemets = !m_entreGuillemets;
        m_vu = static_cast<std::size_t>(ligne - tampon);
        if (!trouvee) break;
        if (!m_entreGuillemets) return m_vu;
        ++m_vu;
    }
    return aucune;
}

// Reads on, in more room where a record fills what there is. False at the end of the file.
bool LecteurCsv::Remplit() {
    std::memmove(m_tampon.data(), m_tampon.data() + m_debut, m_fin - m_debut);
    m_fin -= m_debut, m_vu -= m_debut, m_debut = 0;
    if (m_fin == m_tampon.size()) m_tampon.resize(2 * m_tampon.size());
    m_entree.read(m_tampon.data() + m_fin, static_cast<std::streamsize>(m_tampon.size() - m_fin));
    const auto lus = static_cast<std::size_t>(m_entree.gcount());
    m_fin += lus;
    return lus > 0;
}

// Quoted fields are written over themselves without their quotes: they only get shorter.
void LecteurCsv::DecoupeAvecGuillemets(char* debut, char* fin, std::vector<std::string_view>& champs) const {
    char *champ = debut, *vers = debut;
    bool entreGuillemets = false;
    for (const char* c = debut; c != fin; ++c) {
        if (entreGuillemets) {
            if (*c != '"') {
                *vers++ = *c;
            } else if (c + 1 != fin && c[1] == '"') {
                *vers++ = *c++;
            } else {
                entreGuillemets = false;
            }
        } else if (*c == '"') {
            entreGuillemets = true;
        } else if (*c == m_separateur) {
            champs.emplace_back(champ, static_cast<std::size_t>(vers - champ));
            champ = vers;
        } else {
            *vers++ = *c;
        }
    }
    champs.emplace_back(champ, static_cast<std::size_t>(vers - champ));
}

void EcritChamp(std::string& vers, std::string_view champ, char separateur) {
    const bool nu = std::none_of(champ.begin(), champ.end(),
                                 [&](char c) { return c == separateur || c == '"' || c == '\n' || c == '\r'; });
    if (nu) {
        vers += champ;
        return;
    }
    vers += '"';
    for (const char c : champ) vers.append(c == '"' ? 2 : 1, c);
    vers += '"';
}

}  // namespace outil
