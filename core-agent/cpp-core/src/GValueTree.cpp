// The parts of GValue that use trees.
#include <boost/make_shared.hpp>

#include "FailedCheck.h"
#include "GKVTree.h"

void GValue::Assign(const GKVTree& value) {
  GValueImpl element;
  element.tree = boost::make_shared<GKVTree>(value);
  Replace(kValueType_kvtree, false, {element});
}

TModuleErrorCode GValue::GetValue(GKVTree& out, size_t index) const {
  PASS_ON_ERROR(Check(kValueType_kvtree, index));
  out.Assign(*(*m_dataPtr)[index].tree);
  return CoreErrorCodes::kSuccess;
}

namespace {

bool EqualElements(const GValue::GValueImpl& a, const GValue::GValueImpl& b) {
  if (a.integral != b.integral || !a.text != !b.text || !a.tree != !b.tree) return false;
  return (!a.text || *a.text == *b.text) && (!a.tree || *a.tree == *b.tree);
}

}  // namespace

bool operator==(const GValue& a, const GValue& b) {
  if (a.m_eValueType != b.m_eValueType || a.m_dataPtr->size() != b.m_dataPtr->size()) return false;
  for (size_t i = 0; i < a.m_dataPtr->size(); ++i) {
    if (!EqualElements((*a.m_dataPtr)[i], (*b.m_dataPtr)[i])) return false;
  }
  return true;
}
