#ifndef KV_HPP
#define KV_HPP

// kv.h for C++20: handles that free themselves, statuses that are not KV_OK thrown as kv::Error, texts and spans. The
// comments of kv.h hold; each function here is one of them.
//
//     kv::Return household;
//     household.set("M", 1).set("1AJ", 42000).compute();
//     std::cout << household["TOT_PAYER"] << '\n';

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "kv.h"

namespace kv {

/// A call that failed: its status, and the message of its handle, or what the status means.
class Error : public std::runtime_error {
  public:
    Error(kv_status status, const char* message)
        : std::runtime_error(*message ? message : kv_status_text(status)), m_status(status) {}
    kv_status status() const noexcept { return m_status; }

  private:
    kv_status m_status;
};

namespace detail {

inline void check(kv_status status, const char* message = "") {
    if (status != KV_OK) throw Error(status, message);
}

// The numbers that a search finds: it is asked how many there are, then for all of them.
template <class Search>
std::vector<int32_t> numbers(Search search) {
    int32_t count = 0;
    if (const kv_status status = search(nullptr, 0, &count); status != KV_TOO_SMALL) check(status);
    std::vector<int32_t> found(static_cast<std::size_t>(count));
    check(search(found.data(), count, &count));
    return found;
}

inline std::optional<int32_t> found(kv_status status, int32_t number) {
    if (status == KV_UNKNOWN) return std::nullopt;
    check(status);
    return number;
}

}  // namespace detail

// ---- The catalogues and the parameters of the law.

/// How many boxes a catalogue has.
inline int32_t count(kv_catalogue catalogue) {
    int32_t count = 0;
    detail::check(kv_box_count(catalogue, &count));
    return count;
}
/// The number of a box; none when no box has this name.
inline std::optional<int32_t> find(kv_catalogue catalogue, const std::string& name) {
    int32_t number = -1;
    const kv_status status = kv_box_find(catalogue, name.c_str(), &number);
    return detail::found(status, number);
}
inline kv_box describe(kv_catalogue catalogue, int32_t number) {
    kv_box box{};
    box.size = sizeof box;
    detail::check(kv_box_describe(catalogue, number, &box));
    return box;
}
/// The boxes whose name contains a text, or whose label its words.
inline std::vector<int32_t> search(kv_catalogue catalogue, const std::string& words) {
    return detail::numbers([&](int32_t* numbers, int32_t capacity, int32_t* count) {
        return kv_box_search(catalogue, words.c_str(), numbers, capacity, count);
    });
}
/// The boxes whose name looks most like a mistyped one.
inline std::vector<int32_t> nearest(kv_catalogue catalogue, const std::string& name) {
    return detail::numbers([&](int32_t* numbers, int32_t capacity, int32_t* count) {
        return kv_box_nearest(catalogue, name.c_str(), numbers, capacity, count);
    });
}

/// The reduction lines, in the order of imputation.
inline std::vector<kv_reduction> reduction_lines() {
    int32_t count = 0;
    detail::check(kv_reduction_count(&count));
    std::vector<kv_reduction> lines(static_cast<std::size_t>(count));
    for (int32_t i = 0; i < count; ++i) {
        kv_reduction& line = lines[static_cast<std::size_t>(i)];
        line.size = sizeof line;
        detail::check(kv_reduction_describe(i, &line));
    }
    return lines;
}

inline int32_t parameter_count() {
    int32_t count = 0;
    detail::check(kv_parameter_count(&count));
    return count;
}
/// The number of a parameter; none when none has this name.
inline std::optional<int32_t> find_parameter(const std::string& name) {
    int32_t number = -1;
    const kv_status status = kv_parameter_find(name.c_str(), &number);
    return detail::found(status, number);
}
inline kv_parameter describe_parameter(int32_t number) {
    kv_parameter parameter{};
    parameter.size = sizeof parameter;
    detail::check(kv_parameter_describe(number, &parameter));
    return parameter;
}
/// The parameters whose name or source contains a text.
inline std::vector<int32_t> search_parameters(const std::string& text) {
    return detail::numbers([&](int32_t* numbers, int32_t capacity, int32_t* count) {
        return kv_parameter_search(text.c_str(), numbers, capacity, count);
    });
}

// ---- Handles.

/// A law: the figures of the year, or others laid over them.
class Law {
  public:
    Law() {
        kv_law* law = nullptr;
        detail::check(kv_law_create(&law));
        m_law.reset(law);
    }
    Law(const Law& other) {
        kv_law* law = nullptr;
        detail::check(kv_law_copy(other.handle(), &law));
        m_law.reset(law);
    }
    Law(Law&&) noexcept = default;
    Law& operator=(const Law& other) { return *this = Law(other); }
    Law& operator=(Law&&) noexcept = default;

    Law& set(const std::string& parameter, double value) {
        return check(kv_law_set(handle(), parameter.c_str(), value)), *this;
    }
    Law& set(int32_t parameter, double value) { return check(kv_law_set_parameter(handle(), parameter, value)), *this; }
    double get(const std::string& parameter) const {
        double value = 0;
        check(kv_law_get(handle(), parameter.c_str(), &value));
        return value;
    }
    double get(int32_t parameter) const {
        double value = 0;
        check(kv_law_get_parameter(handle(), parameter, &value));
        return value;
    }
    /// Throws when the law can't be applied.
    void validate() const { check(kv_law_check(handle())); }

    kv_law* handle() const noexcept { return m_law.get(); }

  private:
    void check(kv_status status) const { detail::check(status, kv_law_message(handle())); }

    struct Free {
        void operator()(kv_law* law) const noexcept { kv_law_free(law); }
    };
    std::unique_ptr<kv_law, Free> m_law;
};

/// A return and, once computed, its results.
class Return {
  public:
    Return() {
        kv_return* r = nullptr;
        detail::check(kv_return_create(&r));
        m_return.reset(r);
    }
    Return(const Return& other) {
        kv_return* r = nullptr;
        detail::check(kv_return_copy(other.handle(), &r));
        m_return.reset(r);
    }
    Return(Return&&) noexcept = default;
    Return& operator=(const Return& other) { return *this = Return(other); }
    Return& operator=(Return&&) noexcept = default;

    // ---- What a household declares.

    Return& clear() { return done(kv_return_clear(handle())); }
    /// "1AJ", "ti.1AW", "quotient.4.1AJ".
    Return& set(const std::string& name, int32_t value) { return done(kv_set(handle(), name.c_str(), value)); }
    Return& set(int32_t entry, int32_t value, kv_area area = KV_AREA_ENTRY) {
        return done(kv_set_box(handle(), area, entry, value));
    }
    Return& set_exceptional(int32_t entry, int32_t coefficient, int32_t amount) {
        return done(kv_set_exceptional(handle(), entry, coefficient, amount));
    }
    Return& set_period(int32_t first, int32_t last) { return done(kv_set_period(handle(), first, last)); }
    Return& set_launch(kv_launch launch) { return done(kv_set_launch(handle(), launch)); }
    Return& set_indexation(double percent) { return done(kv_set_indexation(handle(), percent)); }
    Return& set_law(const Law& law) { return done(kv_set_law(handle(), law.handle())); }

    int32_t get(const std::string& name) const {
        return value([&](int32_t* v) { return kv_get(handle(), name.c_str(), v); });
    }
    int32_t get(int32_t entry, kv_area area = KV_AREA_ENTRY) const {
        return value([&](int32_t* v) { return kv_get_box(handle(), area, entry, v); });
    }
    int32_t get_exceptional(int32_t entry, int32_t coefficient) const {
        return value([&](int32_t* v) { return kv_get_exceptional(handle(), entry, coefficient, v); });
    }
    struct Exceptional {
        int32_t entry, coefficient, amount;
    };
    /// The exceptional amounts, by box, then by coefficient.
    std::vector<Exceptional> exceptional() const {
        int32_t count = 0;
        check(kv_exceptional_count(handle(), &count));
        std::vector<Exceptional> amounts(static_cast<std::size_t>(count));
        for (int32_t i = 0; i < count; ++i) {
            Exceptional& e = amounts[static_cast<std::size_t>(i)];
            check(kv_exceptional_at(handle(), i, &e.entry, &e.coefficient, &e.amount));
        }
        return amounts;
    }
    struct Period {
        int32_t first, last;
    };
    Period period() const {
        Period p{};
        check(kv_get_period(handle(), &p.first, &p.last));
        return p;
    }
    kv_launch launch() const {
        return value([&](int32_t* v) { return kv_get_launch(handle(), v); });
    }
    double indexation() const {
        double percent = 0;
        check(kv_get_indexation(handle(), &percent));
        return percent;
    }
    Law law() const {
        Law law;
        check(kv_get_law(handle(), law.handle()));
        return law;
    }
    /// What can't be true of the entry boxes.
    std::vector<std::string> warnings() const {
        int32_t count = 0;
        check(kv_check(handle(), &count));
        std::vector<std::string> texts;
        for (int32_t i = 0; i < count; ++i) {
            const char* text = nullptr;
            check(kv_warning(handle(), i, &text));
            texts.emplace_back(text);
        }
        return texts;
    }

    // ---- What the computation finds.

    Return& compute() { return done(kv_compute(handle())); }
    /// "TOT_PAYER", "CO_19.c2", "F11_6FL".
    int32_t operator[](const std::string& figure) const {
        return value([&](int32_t* v) { return kv_read(handle(), figure.c_str(), v); });
    }
    int32_t output(int32_t number, int32_t column = 0) const {
        return value([&](int32_t* v) { return kv_read_output(handle(), number, column, v); });
    }
    /// Outputs 0 to values.size() - 1: their values, or one of their columns.
    void outputs(std::span<int32_t> values, int32_t column = 0) const {
        check(kv_read_outputs(handle(), column, values.data(), static_cast<int32_t>(values.size())));
    }
    std::string text(int32_t output) const {
        char text[KV_TEXT];
        std::size_t length = 0;
        check(kv_read_text(handle(), output, text, sizeof text, &length));
        return {text, length};
    }
    std::string text(const std::string& output) const {
        const auto number = find(KV_OUTPUT, output);
        if (!number) throw Error(KV_UNKNOWN, ("unknown output " + output).c_str());
        return text(*number);
    }
    int32_t carry(int32_t number) const {
        return value([&](int32_t* v) { return kv_read_carry(handle(), number, v); });
    }
    int32_t entry(int32_t number) const {
        return value([&](int32_t* v) { return kv_read_entry(handle(), number, v); });
    }
    kv_options options() const {
        kv_options options{};
        options.size = sizeof options;
        check(kv_read_options(handle(), &options));
        return options;
    }

    // ---- Many returns, in columns.

    /// Computes a return for each row over this one; threads 0: one a processor.
    void compute_columns(int64_t rows, std::span<const kv_input_column> inputs,
                         std::span<const kv_output_column> outputs, int32_t threads = 0) const {
        kv_columns columns{};
        columns.rows = rows;
        columns.inputs = inputs.data(), columns.input_count = static_cast<int32_t>(inputs.size());
        columns.outputs = outputs.data(), columns.output_count = static_cast<int32_t>(outputs.size());
        columns.threads = threads;
        compute_columns(columns);
    }
    /// The same, with statuses and progress; the size is set here.
    void compute_columns(kv_columns columns) const {
        columns.size = sizeof columns;
        check(kv_compute_columns(handle(), &columns));
    }

    // ---- Why a figure is what it is, and what would change it; null for the net amount.

    /// A JSON tree; depth: the levels below the figure, all of them when negative.
    std::string explain(const char* figure = nullptr, int32_t depth = -1) const {
        const char* json = nullptr;
        check(kv_explain(handle(), figure, depth, &json));
        return json;
    }

    /// The branches in which this return differs from another one.
    std::string explain_difference(const Return& before, const char* figure = nullptr, int32_t depth = -1) const {
        const char* json = nullptr;
        check(kv_explain_difference(before.handle(), handle(), figure, depth, &json));
        return json;
    }

    struct Effects {
        int32_t value = 0;  ///< the figure as it is
        std::vector<kv_effect>
            amounts;  ///< the most telling first; their names live until the next call on this return
    };
    Effects effects(const char* figure = nullptr) const {
        Effects found;
        int32_t count = 0;
        check(kv_effects(handle(), figure, &found.value, &count));
        found.amounts.resize(static_cast<std::size_t>(count));
        for (int32_t i = 0; i < count; ++i) {
            kv_effect& effect = found.amounts[static_cast<std::size_t>(i)];
            effect.size = sizeof effect;
            check(kv_effect_at(handle(), i, &effect));
        }
        return found;
    }
    struct Curve {
        std::vector<int32_t> amounts, values;
        std::vector<double> average, marginal;
    };
    /// The size of the range is set here, as in breaks.
    Curve curve(kv_range range) const {
        range.size = sizeof range;
        int32_t count = 0;
        const kv_status status = kv_curve(handle(), &range, nullptr, nullptr, nullptr, nullptr, 0, &count);
        if (status != KV_TOO_SMALL) check(status);
        const auto n = static_cast<std::size_t>(count);
        Curve c{std::vector<int32_t>(n), std::vector<int32_t>(n), std::vector<double>(n), std::vector<double>(n)};
        check(kv_curve(handle(), &range, c.amounts.data(), c.values.data(), c.average.data(), c.marginal.data(), count,
                       &count));
        return c;
    }
    std::vector<kv_piece> breaks(kv_range range) const {
        range.size = sizeof range;
        std::vector<kv_piece> pieces(4096);
        int32_t count = 0;
        kv_status status;
        while ((status = kv_breaks(handle(), &range, pieces.data(), static_cast<int32_t>(pieces.size()), &count)) ==
               KV_TOO_SMALL)
            pieces.resize(static_cast<std::size_t>(count));
        check(status);
        pieces.resize(static_cast<std::size_t>(count));
        return pieces;
    }

    /// Computes, and calls line(text) for each line of the trace. What line throws is thrown again at the end.
    template <class Line>
    Return& compute_traced(Line&& line) {
        struct Bridge {
            Line& line;
            std::exception_ptr fault;
        } bridge{line, nullptr};
        const kv_status status = kv_compute_traced(
            handle(),
            [](const char* text, void* context) {
                Bridge& b = *static_cast<Bridge*>(context);
                if (b.fault) return;
                try {
                    b.line(text);
                } catch (...) {
                    b.fault = std::current_exception();
                }
            },
            &bridge);
        if (bridge.fault) std::rethrow_exception(bridge.fault);
        return done(status);
    }

    kv_return* handle() const noexcept { return m_return.get(); }

  private:
    void check(kv_status status) const { detail::check(status, kv_message(handle())); }
    Return& done(kv_status status) { return check(status), *this; }
    template <class Call>
    int32_t value(Call call) const {
        int32_t value = 0;
        check(call(&value));
        return value;
    }

    struct Free {
        void operator()(kv_return* r) const noexcept { kv_return_free(r); }
    };
    std::unique_ptr<kv_return, Free> m_return;
};

}  // namespace kv

#endif
