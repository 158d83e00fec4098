// A host in C++ on kv.hpp: a couple with a child and dividends, which compares the flat tax with the scale, then a
// salary taxed by the quotient, and a walk over all outputs at once.

#include <algorithm>
#include <iostream>
#include <kv.hpp>
#include <vector>

int main() try {
    kv::Return household;
    household.set("M", 1).set("Fm", 1).set("1AJ", 46000).set("1BJ", 38000).set("2DC", 3000).set("7UF", 600);
    household.set("AVA", 1).set_launch(KV_LAUNCH_OPTIONS).compute();
    const kv_options options = household.options();
    std::cout << "flat tax " << options.flat_tax << ", scale " << options.scale << ": "
              << (options.applied == KV_FLAT_TAX ? "flat tax" : "scale") << '\n';
    std::cout << "to pay " << household["S_NET_A_PAYER"] << ", net salary of the second declarant "
              << household["RN_SAL.c2"] << ", gifts " << household.text("U_DONS_OEUVRES_N") << ", next year's ceiling "
              << household["F11_6PSS"] << '\n';

    // 8 000 of deferred salary, taxed by the quotient over 4 years; a copy leaves the household as it is.
    kv::Return deferred = household;
    deferred.set("quotient.4.1AJ", 8000).compute();
    std::cout << "with the deferred salary " << deferred["S_NET_A_PAYER"] - household["S_NET_A_PAYER"] << " more\n";

    std::vector<int32_t> before(static_cast<std::size_t>(kv::count(KV_OUTPUT))), after(before.size());
    household.outputs(before);
    deferred.outputs(after);
    for (std::size_t i = 0; i < before.size(); ++i) before[i] -= after[i];
    std::cout << std::count_if(before.begin(), before.end(), [](int32_t d) { return d != 0; })
              << " outputs differ, such as "
              << kv::describe(KV_OUTPUT, kv::find(KV_OUTPUT, "RQ_REV_EXCEP").value()).label << '\n';
    return 0;
} catch (const kv::Error& e) {
    std::cerr << e.what() << '\n';
    return 1;
}
