#include "tools/camhook/rules/Proof.h"

#include <algorithm>

#include "common/sensormode/SensorScenario.h"

namespace camhook {
namespace {

std::size_t givenCount(const Inputs& inputs) {
  return static_cast<std::size_t>(std::ranges::count_if(
      inputFields(), [&](const InputField& field) { return field.text(inputs) != kAbsent; }));
}

/// What decides of a list of rows or overrides, and what comes of it.
struct Taken {
  std::optional<std::size_t> row;
  std::int32_t scenario = hesk::NO_DECISION;
};

/// Proves the rows of one list. `take` lets the list decide without the row that it is handed, if
/// any; `meets` tells whether a row would decide if it were the only one.
template <typename Take, typename Meets>
void proveRows(ListProof& proof, const Axes& axes, const Inputs& plain, Take take, Meets meets) {
  proof.cases = caseCount(axes);
  std::vector<std::size_t> given(proof.rows.size());
  for (RowProof& row : proof.rows) row.isRedundant = true;
  forEachCase(axes, plain, [&](const Inputs& inputs, const Case& /*values*/) {
    const Taken taken = take(inputs, std::nullopt);
    if (!taken.row) return;
    RowProof& decider = proof.rows[*taken.row];
    if (const std::size_t count = givenCount(inputs);
        !decider.witness || count < given[*taken.row]) {
      decider.witness = inputs;
      given[*taken.row] = count;
    }
    if (take(inputs, taken.row).scenario != taken.scenario) decider.isRedundant = false;
    for (std::size_t i = 0; i < proof.rows.size(); ++i) {
      std::vector<std::size_t>& before = proof.rows[i].before;
      if (i == *taken.row || !meets(i, inputs)) continue;
      if (std::ranges::find(before, *taken.row) == before.end()) before.push_back(*taken.row);
    }
  });
  for (RowProof& row : proof.rows) std::ranges::sort(row.before);
}

ListProof proveList(const RuleSet& rules, const SensorModeTable& table, const RuleList& list,
                    const Assumptions& assumed) {
  const Rules& rows = table.*list.rules;
  ListProof proof{&table, &list, 0, std::vector<RowProof>(rows.size())};
  const auto take = [&](const Inputs& inputs, std::optional<std::size_t> omitted) {
    Rules present = rows;
    if (omitted) present.erase(present.begin() + static_cast<std::ptrdiff_t>(*omitted));
    const std::optional<Selection> selection = selectRow(present, inputs);
    Taken taken;
    if (selection) taken.row = selection->row;
    if (const auto override = holdingOverride(rules.overrides, inputs)) {
      taken.scenario = rules.overrides[*override].scenario;
    } else {
      taken.scenario = baseScenario(present, selection, inputs.video);
    }
    return taken;
  };
  const auto meets = [&](std::size_t row, const Inputs& inputs) {
    return selectRow(std::span(rows).subspan(row, 1), inputs).has_value();
  };
  proveRows(proof, axesOfRules({rows}, assumed),
            plainInputs(table.productName, list.sensor, list.video), take, meets);
  return proof;
}

ListProof proveOverrides(const std::vector<hesk::Override>& overrides, const Assumptions& assumed) {
  ListProof proof{nullptr, nullptr, 0, std::vector<RowProof>(overrides.size())};
  const auto take = [&](const Inputs& inputs, std::optional<std::size_t> omitted) {
    const std::size_t end = omitted.value_or(overrides.size());
    Taken taken;
    taken.row = holdingOverride(std::span(overrides).first(end), inputs);
    if (taken.row) taken.scenario = overrides[*taken.row].scenario;
    return taken;
  };
  const auto meets = [&](std::size_t row, const Inputs& inputs) {
    return fires(overrides[row], inputs.forOverrides());
  };
  proveRows(proof, axesOfOverrides({overrides}, assumed), plainInputs("", 0, false), take, meets);
  return proof;
}

}  // namespace

std::vector<ListProof> proveRules(const RuleSet& rules, const Assumptions& assumed) {
  std::vector<ListProof> proofs;
  for (const SensorModeTable& table : rules.tables) {
    for (const RuleList& list : kRuleLists) {
      proofs.push_back(proveList(rules, table, list, assumed));
    }
  }
  proofs.push_back(proveOverrides(rules.overrides, assumed));
  return proofs;
}

}  // namespace camhook
