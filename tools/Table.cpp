#include "Table.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "Csv.h"

namespace outil {

namespace {

constexpr const char* colonneStatut = "status";

// ---- The header.

std::string EnMinuscules(std::string_view texte) {
    std::string minuscules(texte);
    for (char& c : minuscules)
        if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return minuscules;
}

bool EstLettre(char c) { return 'a' <= c && c <= 'z'; }
bool EstChiffre(char c) { return '0' <= c && c <= '9'; }

// Whether a column that is no box looks like one that was meant: the name of a box in other letters or with signs
// around it, a word that has the form of one ("1AX"), what begins like the name of a companion.
bool RessembleAUneBoite(const std::string& nom) {
    static const std::set<std::string> boites = [] {
        std::set<std::string> noms;
        for (int32_t i = 0, n = kv::count(KV_ENTRY); i < n; ++i)
            noms.insert(EnMinuscules(kv::describe(KV_ENTRY, i).name));
        return noms;
    }();
    static const std::set<std::string> aires = {"entries", "ti", "tix", "tiy", "tk", "tkz", "quotient", "quotients"};
    static const std::set<std::string> rangs = {"st", "nd", "rd", "th", "er", "re", "e"};
    const std::string minuscules = EnMinuscules(nom);
    std::string lettres, mot;
    const auto aLaForme = [&] {
        const bool forme = 3 <= mot.size() && mot.size() <= 5 && EstChiffre(mot[0]) && EstLettre(mot[1]);
        return forme && !rangs.contains(mot.substr(1));  // "1st"
    };
    for (const char c : minuscules + ' ') {
        if (EstLettre(c) || EstChiffre(c)) {
            mot += c, lettres += c;
            continue;
        }
        if (aLaForme()) return true;
        mot.clear();
    }
    const std::size_t point = minuscules.find('.');
    return boites.contains(lettres) || (point != nom.npos && aires.contains(minuscules.substr(0, point)));
}

// A name or a value as a message shows it.
std::string Cite(std::string_view texte) {
    constexpr std::size_t longueur = 60;
    return '"' + std::string(texte.substr(0, longueur)) + (texte.size() > longueur ? "..." : "") + '"';
}

// What the columns of the input are: amounts, each with its place among them, or -1 for what passes through.
struct EnTete {
    std::vector<std::string> noms;
    std::vector<std::ptrdiff_t> places;
    std::vector<std::string> montants;  // the names of the amounts, in their order

    EnTete(const std::vector<std::string_view>& champs, const std::string& fichier) {
        const kv::Return essai;
        for (const std::string_view champ : champs) {
            const std::string& nom = noms.emplace_back(champ);
            const std::string ou = fichier + ": column " + std::to_string(noms.size()) + ' ' + Cite(nom) + ": ";
            if (nom.find_first_of(std::string_view("\0\r", 2)) != nom.npos)
                throw ErreurEntree(fichier + ": is not UTF-8 text whose lines end with LF or CRLF");
            int32_t valeur = 0;
            const kv_status statut = kv_get(essai.handle(), nom.c_str(), &valeur);
            if (statut == KV_NO_AMOUNT || (statut != KV_OK && RessembleAUneBoite(nom)))
                throw ErreurEntree(ou + kv_message(essai.handle()) + "; a column that is no box needs another name");
            if (statut == KV_OK && std::find(montants.begin(), montants.end(), nom) != montants.end())
                throw ErreurEntree(ou + "stands twice");
            places.push_back(statut == KV_OK ? std::ssize(montants) : -1);
            if (statut == KV_OK) montants.push_back(nom);
        }
        if (montants.empty())
            throw ErreurEntree(
                fichier + ": no column is a box; the first line names them, UTF-8, with commas, semicolons or tabs");
    }

    // Calls f with the name of each column that passes through.
    template <class Fonction>
    void PourCeuxQuiPassent(Fonction f) const {
        for (std::size_t i = 0; i < noms.size(); ++i)
            if (places[i] < 0) f(noms[i]);
    }
};

void ControleFigures(const std::vector<std::string>& figures, const EnTete& enTete) {
    kv::Return essai;
    essai.compute();
    std::set<std::string> vues = {colonneStatut};
    for (const std::string& figure : figures) {
        if (figure.empty()) throw ErreurEntree("--outputs: a name is empty");
        int32_t valeur = 0;
        if (kv_read(essai.handle(), figure.c_str(), &valeur) != KV_OK)
            throw ErreurEntree(std::string("--outputs: ") + kv_message(essai.handle()));
        if (!vues.insert(figure).second) throw ErreurEntree("--outputs: " + figure + " stands twice");
    }
    enTete.PourCeuxQuiPassent([&](const std::string& nom) {
        if (!vues.insert(nom).second) throw ErreurEntree("two columns of the result would be called " + Cite(nom));
    });
}

// ---- Rows.

// A whole number of 32 bits, 0 for an empty field; decimals may be zeros. False for anything else.
bool LisMontant(std::string_view champ, int32_t& montant) {
    while (!champ.empty() && champ.front() == ' ') champ.remove_prefix(1);
    while (!champ.empty() && champ.back() == ' ') champ.remove_suffix(1);
    montant = 0;
    if (champ.empty()) return true;
    if (champ.front() == '+') {
        champ.remove_prefix(1);
        if (champ.starts_with('-')) return false;
    }
    const char* const fin = champ.data() + champ.size();
    const auto [lu, erreur] = std::from_chars(champ.data(), fin, montant);
    if (erreur != std::errc()) return false;
    if (lu == fin) return true;
    return *lu == '.' && lu + 1 != fin && std::all_of(lu + 1, fin, [](char c) { return c == '0'; });
}

// Some rows, from what is read to what is written.
struct Bloc {
    std::size_t lignes = 0;
    std::vector<std::vector<int32_t>> montants;  // by column
    std::string passe;                           // what passes through, as it will be written
    std::vector<std::size_t> finsDePasse;
    std::vector<std::int64_t> rangs;  // of the rows in the input, from 1
    std::vector<std::string> fautes;  // why a row can't be computed; "" for one that can
    double part = 0;                  // how much of the input has been read by its end
    std::vector<std::vector<int32_t>> figures;
    std::vector<int32_t> statuts;

    Bloc(std::size_t nMontants, std::size_t nFigures, std::size_t capacite)
        : montants(nMontants), figures(nFigures, std::vector<int32_t>(capacite)), statuts(capacite) {}
    std::size_t Capacite() const { return statuts.size(); }
};

class Lecture {
  public:
    explicit Lecture(const DemandeTable& demande)
        : m_demande(demande), m_entree(demande.entree), m_csv(m_entree.Flux()) {
        if (!Enregistrement()) throw ErreurEntree(m_entree.Nom() + ": has no header");
        m_enTete.emplace(m_champs, m_entree.Nom());
    }

    const std::string& Nom() const { return m_entree.Nom(); }
    const EnTete& Colonnes() const { return *m_enTete; }
    char Separateur() const { return m_csv.Separateur(); }
    // How much has been read, 0 to 1; 0 where nobody knows.
    double Part() const {
        return m_entree.Taille() > 0 ? static_cast<double>(m_csv.Octets()) / static_cast<double>(m_entree.Taille()) : 0;
    }

    // The next record that is of this part; false at the end.
    bool Suivant() {
        while (Enregistrement())
            if (m_rang++ % m_demande.parts == m_demande.part - 1) return true;
        return false;
    }
    // Appends what passes through of the record.
    void Passe(std::string& vers) const {
        for (std::size_t i = 0; i < m_enTete->places.size(); ++i) {
            if (m_enTete->places[i] >= 0) continue;
            if (i < m_champs.size()) EcritChamp(vers, m_champs[i], Separateur());
            vers += Separateur();
        }
    }
    void Lis(Bloc& bloc) {
        for (auto& colonne : bloc.montants) colonne.assign(bloc.Capacite(), 0);
        bloc.passe.clear(), bloc.finsDePasse.clear(), bloc.rangs.clear(), bloc.fautes.clear();
        const std::int64_t debut = m_csv.Octets();
        for (bloc.lignes = 0; bloc.lignes < bloc.Capacite() && m_csv.Octets() - debut < octetsParBloc && Suivant();
             ++bloc.lignes)
            LisLigne(bloc);
        bloc.part = Part();
    }

  private:
    static constexpr std::int64_t octetsParBloc = 1 << 22;

    bool Enregistrement() {
        try {
            if (m_csv.Suivant(m_champs)) return true;
        } catch (const std::length_error& e) {
            throw ErreurEntree(m_entree.Nom() + ": row " + std::to_string(m_rang + 1) + ": " + e.what());
        }
        m_entree.Controle();
        return false;
    }
    void LisLigne(Bloc& bloc) {
        const EnTete& enTete = *m_enTete;
        std::string faute;
        for (std::size_t i = 0, n = std::min(enTete.places.size(), m_champs.size()); i < n; ++i) {
            if (enTete.places[i] < 0 || m_champs[i].empty()) continue;
            int32_t& montant = bloc.montants[static_cast<std::size_t>(enTete.places[i])][bloc.lignes];
            if (!LisMontant(m_champs[i], montant) && faute.empty())
                faute = enTete.noms[i] + ": " + Cite(m_champs[i]) + " is not a 32-bit integer";
        }
        if (m_champs.size() != enTete.places.size())
            faute = std::to_string(m_champs.size()) + (m_champs.size() == 1 ? " field" : " fields") + " instead of " +
                    std::to_string(enTete.places.size());
        if (m_csv.Ouvert()) faute = "a quote is never closed";
        if (!faute.empty()) {
            faute = "row " + std::to_string(m_rang) + ": " + faute;
            for (auto& colonne : bloc.montants) colonne[bloc.lignes] = 0;
        }
        Passe(bloc.passe);
        bloc.finsDePasse.push_back(bloc.passe.size());
        bloc.rangs.push_back(m_rang);
        bloc.fautes.push_back(std::move(faute));
    }

    const DemandeTable& m_demande;
    Entree m_entree;
    LecteurCsv m_csv;
    std::optional<EnTete> m_enTete;
    std::vector<std::string_view> m_champs;
    std::int64_t m_rang = 0;  // rows read, those of other parts among them
};

// ---- The result.

std::string EnTeteDuResultat(const EnTete& enTete, const std::vector<std::string>& figures, char separateur) {
    std::string texte;
    const auto ajoute = [&](const std::string& nom) {
        EcritChamp(texte, nom, separateur);
        texte += separateur;
    };
    enTete.PourCeuxQuiPassent(ajoute);
    for (const std::string& figure : figures) ajoute(figure);
    return texte + colonneStatut + '\n';
}

// The rows of a block, as they will be written; how many of them could not be computed.
std::int64_t Redige(const Bloc& bloc, char separateur, std::string& texte) {
    std::int64_t fautes = 0;
    for (std::size_t ligne = 0, debut = 0; ligne < bloc.lignes; debut = bloc.finsDePasse[ligne++]) {
        texte.append(bloc.passe, debut, bloc.finsDePasse[ligne] - debut);
        const bool calculee = bloc.fautes[ligne].empty() && bloc.statuts[ligne] == KV_OK;
        for (const auto& colonne : bloc.figures) {
            char nombre[16];
            if (calculee) texte.append(nombre, std::to_chars(nombre, std::end(nombre), colonne[ligne]).ptr);
            texte += separateur;
        }
        if (!calculee) {
            ++fautes;
            const std::string& faute = bloc.fautes[ligne];
            EcritChamp(texte,
                       faute.empty()
                           ? "row " + std::to_string(bloc.rangs[ligne]) + ": " + kv_status_text(bloc.statuts[ligne])
                           : faute,
                       separateur);
        }
        texte += '\n';
    }
    return fautes;
}

// What a run that was cut short has left: its whole rows, how many of them could not be computed, what passed through
// in the last one.
struct Reste {
    std::int64_t lignes = 0, fautes = 0, octets = 0;
    std::string passe;
};
Reste RelisResultat(const std::string& fichier, const Lecture& lecture, const std::string& enTete) {
    Reste reste;
    std::error_code erreur;
    if (!std::filesystem::exists(fichier, erreur)) return reste;  // nothing yet
    std::size_t passent = 0;
    lecture.Colonnes().PourCeuxQuiPassent([&](const std::string&) { ++passent; });
    if (passent == 0)
        throw ErreurEntree(
            "--resume needs a column that passes through, such as an identifier, to know the rows again");
    const ErreurEntree inconnu(fichier + ": is not the result of such a run, it can't be resumed");
    std::ifstream deja(fichier, std::ios::binary);
    if (!std::filesystem::is_regular_file(fichier, erreur) || !deja) throw inconnu;
    LecteurCsv csv(deja, lecture.Separateur());
    std::vector<std::string_view> champs;
    const auto texte = [&](std::size_t n) {
        std::string relu;
        for (std::size_t i = 0; i < n; ++i) {
            EcritChamp(relu, champs[i], lecture.Separateur());
            relu += lecture.Separateur();
        }
        return relu;
    };
    if (!csv.Suivant(champs)) return reste;
    std::string relu = texte(champs.size());
    relu.back() = '\n';
    if (!csv.Complet()) {  // cut within the header
        std::string debut(static_cast<std::size_t>(csv.Octets()), 0);
        deja.clear();
        deja.seekg(0).read(debut.data(), std::ssize(debut));
        if (!enTete.starts_with(debut)) throw inconnu;
        return reste;
    }
    if (relu != enTete) throw inconnu;
    const std::size_t colonnes = champs.size();
    for (reste.octets = csv.Octets(); csv.Suivant(champs) && csv.Complet() && champs.size() == colonnes;
         reste.octets = csv.Octets()) {
        ++reste.lignes;
        reste.fautes += !champs.back().empty();
        reste.passe = texte(passent);
    }
    return reste;
}

// How many rows make a block: enough to occupy many workers, few enough for wide tables.
std::size_t LignesParBloc(std::size_t colonnes) {
    return std::clamp<std::size_t>((1 << 20) / (colonnes + 1), 512, 4096);
}

void Calcule(const kv::Return& modele, const DemandeTable& demande, const EnTete& enTete, Bloc& bloc,
             Progression& progression, std::int64_t lignes, double part) {
    if (bloc.lignes == 0) return;
    std::vector<kv_input_column> montants;
    for (std::size_t i = 0; i < bloc.montants.size(); ++i)
        montants.push_back({enTete.montants[i].c_str(), bloc.montants[i].data()});
    std::vector<kv_output_column> figures;
    for (std::size_t i = 0; i < bloc.figures.size(); ++i)
        figures.push_back({demande.figures[i].c_str(), bloc.figures[i].data()});
    auto montre = [&](int64_t faites, int64_t parmi) {
        const double dont = static_cast<double>(faites) / static_cast<double>(parmi);
        progression.Montre(lignes + faites, part + (bloc.part - part) * dont);
    };
    kv_columns colonnes{};
    colonnes.size = sizeof colonnes;
    colonnes.rows = static_cast<int64_t>(bloc.lignes);
    colonnes.inputs = montants.data(), colonnes.input_count = static_cast<int32_t>(montants.size());
    colonnes.outputs = figures.data(), colonnes.output_count = static_cast<int32_t>(figures.size());
    colonnes.statuses = bloc.statuts.data();
    colonnes.threads = demande.threads;
    colonnes.context = &montre;
    colonnes.progress = [](int64_t faites, int64_t parmi, void* contexte) -> int32_t {
        (*static_cast<decltype(montre)*>(contexte))(faites, parmi);
        return 0;
    };
    std::fill(bloc.statuts.begin(), bloc.statuts.end(), KV_NO_MEMORY);  // where nothing can begin
    const kv_status statut = kv_compute_columns(modele.handle(), &colonnes);
    if (statut == KV_NULL || statut == KV_UNKNOWN || statut == KV_BAD_VALUE)
        throw kv::Error(statut, kv_message(modele.handle()));
}

// Begins a work beside this thread; does it at once where one thread is to do, or where the system has no more.
template <class Fonction>
std::future<void> EnParallele(std::int32_t threads, const Fonction& travail) {
    if (threads != 1) try {
            return std::async(std::launch::async, std::cref(travail));
        } catch (const std::system_error&) {
        }
    std::packaged_task<void()> maintenant(std::cref(travail));
    maintenant();
    return maintenant.get_future();
}

}  // namespace

std::int64_t CalculeTable(const DemandeTable& demande, const LoiNommee& loi) {
    ControleDifferents(demande.entree, demande.sortie);
    Lecture lecture(demande);
    const EnTete& enTete = lecture.Colonnes();
    ControleFigures(demande.figures, enTete);
    const std::string enTeteEcrit = EnTeteDuResultat(enTete, demande.figures, lecture.Separateur());

    const Reste reste = demande.reprend ? RelisResultat(demande.sortie, lecture, enTeteEcrit) : Reste();
    std::string passe;
    for (std::int64_t i = 0; i < reste.lignes; ++i) {
        if (!lecture.Suivant()) throw ErreurEntree(demande.sortie + ": has more rows than " + lecture.Nom());
        if (i == reste.lignes - 1) lecture.Passe(passe);
    }
    if (passe != reste.passe)
        throw ErreurEntree(demande.sortie + ": its last row is not that of " + lecture.Nom() + ", it can't be resumed");
    Sortie sortie(demande.sortie, reste.octets);
    if (reste.octets == 0) sortie.Ecrit(enTeteEcrit);

    kv::Return modele;
    modele.set_launch(demande.lancement).set_law(loi.loi);
    std::int64_t lignes = reste.lignes, fautes = reste.fautes;
    double part = lecture.Part();
    Progression progression(demande.bavardage, sortie, lignes, part);
    const std::size_t nMontants = enTete.montants.size(), nFigures = demande.figures.size();
    const std::size_t capacite = LignesParBloc(enTete.noms.size() + nFigures);
    Bloc bloc(nMontants, nFigures, capacite), autre = bloc;
    lecture.Lis(bloc);
    while (bloc.lignes > 0 || autre.lignes > 0) {
        // While a block is computed, the one before is written and the one after is read in its place.
        std::string texte;
        const auto ecritEtLis = [&] {
            texte.clear();
            fautes += Redige(autre, lecture.Separateur(), texte);
            sortie.Ecrit(texte);
            lecture.Lis(autre);
        };
        std::future<void> fait = EnParallele(demande.threads, ecritEtLis);
        Calcule(modele, demande, enTete, bloc, progression, lignes, part);
        fait.get();
        lignes += static_cast<std::int64_t>(bloc.lignes), part = bloc.part;
        std::swap(bloc, autre);
    }
    sortie.Vide();
    progression.Efface();
    if (demande.bavardage != Bavardage::Silencieux)
        std::cerr << lignes << " rows, " << fautes << " of them not computed\n";
    return fautes;
}

}  // namespace outil
