#include "Platform.h"

tqTreeNode* tqTreeNode::_copyRoot = nullptr;

unsigned tqz_CurrentApplicationObject() { return 0; }

void dmatinv_(double*, double* result, int* status) {
  for (int i = 0; i < 9; ++i) result[i] = i;
  *status = 0;
}
