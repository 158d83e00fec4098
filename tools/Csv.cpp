#include "Csv.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace outil {

namespace {

constexpr std::size_t nTampon = 1 << 18, aucune = static_cast<std::size_t>(-1);
constexpr std::string_view marque = "\xEF\xBB\xBF";  // byte order mark, UTF-8

// The separator of the first line that is not empty.
char SeparateurDe(std::string_view texte) {
    texte.remove_prefix(std::min(texte.find_first_not_of("\r\n"), texte.size()));
    bool entreGuillemets = false;
    for (const char c : texte) {
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
        m_ouvert = !m_complet && m_etat == Etat::EntreGuillemets;
        m_etat = Etat::Simple;
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
    if (m_etat == Etat::Simple) {
        const char* const vu = m_tampon.data() + m_vu;
        const void* const trouvee = std::memchr(vu, '\n', m_fin - m_vu);
        const char* const ligne = trouvee ? static_cast<const char*>(trouvee) : m_tampon.data() + m_fin;
        if (!std::memchr(vu, '"', static_cast<std::size_t>(ligne - vu))) {
            m_vu = static_cast<std::size_t>(ligne - m_tampon.data());
            return trouvee ? m_vu : aucune;
        }
        m_vu = m_debut;
        m_etat = Etat::DebutDeChamp;
    }
    return FinParmiLesGuillemets();
}

std::size_t LecteurCsv::FinParmiLesGuillemets() {
    for (; m_vu < m_fin; ++m_vu) {
        const char c = m_tampon[m_vu];
        if (m_etat == Etat::EntreGuillemets) {
            if (c == '"') m_etat = Etat::GuillemetDansUnChamp;
        } else if (c == '"' && m_etat != Etat::Champ) {  // one that opens, or the second of two
            m_etat = Etat::EntreGuillemets;
        } else if (c == '\n') {
            return m_vu;
        } else {
            m_etat = c == m_separateur ? Etat::DebutDeChamp : Etat::Champ;
        }
    }
    return aucune;
}

// Reads on, in more room where a record fills what there is. False at the end of the file.
bool LecteurCsv::Remplit() {
    std::memmove(m_tampon.data(), m_tampon.data() + m_debut, m_fin - m_debut);
    m_fin -= m_debut, m_vu -= m_debut, m_debut = 0;
    if (m_fin == m_tampon.size()) {
        if (m_fin > longueurMaximale) throw std::length_error("a record of more than 16 MB; is a quote never closed?");
        m_tampon.resize(2 * m_tampon.size());
    }
    m_entree.read(m_tampon.data() + m_fin, static_cast<std::streamsize>(m_tampon.size() - m_fin));
    const auto lus = static_cast<std::size_t>(m_entree.gcount());
    m_fin += lus;
    return lus > 0;
}

// Quoted fields are written over themselves without their quotes: they only get shorter.
void LecteurCsv::DecoupeAvecGuillemets(char* debut, char* fin, std::vector<std::string_view>& champs) const {
    char *champ = debut, *vers = debut;
    Etat etat = Etat::DebutDeChamp;
    for (const char* c = debut; c != fin; ++c) {
        if (etat == Etat::EntreGuillemets) {
            if (*c == '"')
                etat = Etat::GuillemetDansUnChamp;
            else
                *vers++ = *c;
        } else if (*c == '"' && etat != Etat::Champ) {
            if (etat == Etat::GuillemetDansUnChamp) *vers++ = '"';
            etat = Etat::EntreGuillemets;
        } else if (*c == m_separateur) {
            champs.emplace_back(champ, static_cast<std::size_t>(vers - champ));
            champ = vers;
            etat = Etat::DebutDeChamp;
        } else {
            *vers++ = *c;
            etat = Etat::Champ;
        }
    }
    champs.emplace_back(champ, static_cast<std::size_t>(vers - champ));
}

void EcritChamp(std::string& vers, std::string_view champ, char separateur) {
    // A byte order mark that opens a field would be lost if the field opened the file.
    const bool nu = !champ.starts_with(marque) && std::none_of(champ.begin(), champ.end(), [&](char c) {
        return c == separateur || c == '"' || c == '\n' || c == '\r';
    });
    if (nu) {
        vers += champ;
        return;
    }
    vers += '"';
    for (const char c : champ) vers.append(c == '"' ? 2 : 1, c);
    vers += '"';
}

}  // namespace outil
