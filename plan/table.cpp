// Tables: a question over every combination of several values.
#include <algorithm>

#include "plan/text.h"
#include "plan/vocabulary.h"
#include "statplan/plan.h"

namespace statplan {

namespace {

constexpr double kMostRows = 1e7;

/// The answers of a row, as columns: which there are is settled by the question.
class Answers {
  public:
    Answers(const Plan& plan, std::vector<Table::Column>& columns)
        : plan_(plan), columns_(columns), first_(columns.size()) {
        for (const Argument* a : plan.answers()) {
            const bool varies = std::ranges::find(columns, a->name, &Table::Column::name) != columns.end();
            columns.push_back({varies ? "reached" : std::string(a->name), a, {}});
        }
    }

    void add(const Values& values, const Plan::Answer& answer) {
        std::size_t column = first_;
        if (plan_.unknown()) {
            columns_[column++].values.push_back(values[*plan_.unknown()]);
        } else if (plan_.searches_sizes()) {
            const bool guaranteed = values.is(common::rule, Rule::guaranteed);
            const auto& found = guaranteed ? answer.guaranteed : answer.smallest;
            if (plan_.test().sizes.found.front().kind == Kind::list) {
                double sum = 0;
                for (const double size : found) sum += size;
                columns_[column++].values.push_back(sum);
            } else {
                for (const double size : found) columns_[column++].values.push_back(size);
            }
        }
        columns_[column].values.push_back(answer.reached);
    }

    void add_none() {
        for (std::size_t i = first_; i < columns_.size(); ++i) columns_[i].values.push_back(kNotGiven);
    }

  private:
    const Plan& plan_;
    std::vector<Table::Column>& columns_;
    std::size_t first_;
};

}  // namespace

Outcome<Table> ask_table(const Question& question, Cancel* cancel) {
    if (!question.test) return Refusal{.argument = "test", .reason = "is needed"};
    std::vector<std::string_view> names;
    double rows = 1;
    for (const auto& given : question.given) {
        names.push_back(given.name);
        const Argument* a = find_argument(*question.test, given.name);
        if (a && a->kind != Kind::list) rows *= static_cast<double>(given.values.size());
    }
    const auto plan = Plan::prepare(*question.test, question.unknown, names);
    if (!plan) return plan.refusal();
    if (plan->question() == "effect")
        return Refusal{.argument = {}, .reason = "effect answers one design at a time"};
    if (!(rows <= kMostRows))
        return Refusal{.argument = {}, .reason = "the table has more than ten million rows"};

    Table table{
        .test = question.test, .question = std::string(plan->question()), .unknown = question.unknown};
    Values values = plan->blank();
    std::vector<std::size_t> varies;  // positions in given
    for (std::size_t i = 0; i < question.given.size(); ++i) {
        const Argument& a = *plan->given()[i];
        const auto& several = question.given[i].values;
        if (a.kind == Kind::list) {
            values.set(a, several);
        } else if (several.size() == 1) {
            values.set(a, several.front());
        } else {
            varies.push_back(i);
            table.over.push_back(&a);
            table.columns.push_back({std::string(a.name), &a, {}});
        }
    }
    Answers answers(*plan, table.columns);
    const Values common_values = values;
    for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row) {
        std::size_t rest = row;
        values = common_values;
        for (std::size_t i = varies.size(); i-- > 0;) {
            const auto& several = question.given[varies[i]].values;
            const double x = several[rest % several.size()];
            rest /= several.size();
            values.set(*table.over[i], x);
            table.columns[i].values.push_back(x);
        }
        Plan::Answer answer;
        const Check wrong = plan->answer(values, answer, cancel);
        if (cancel && cancel->IsCancelRequested())
            return Refusal{.kind = Refusal::cancelled, .argument = {}, .reason = "stopped"};
        if (wrong) {
            answers.add_none();
            table.refusals.resize(row);
            table.refusals.push_back(wrong->message());
        } else {
            answers.add(values, answer);
        }
        if (row == 0)
            for (const Argument* a : plan->used(values))
                if (std::ranges::find(table.over, a->place, &Argument::place) == table.over.end()) {
                    const auto list = values.list(*a);
                    table.asked.push_back({a, a->kind == Kind::list
                                                  ? std::vector<double>(list.begin(), list.end())
                                                  : std::vector<double>{values[*a]}});
                }
    }
    if (!table.refusals.empty()) table.refusals.resize(static_cast<std::size_t>(rows));
    return table;
}

}  // namespace statplan
