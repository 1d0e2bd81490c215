#include "rng/Rng_ComData.h"

namespace Trel::Rng {

DataWrap::DataWrap() {
  Invalidate();
}

void DataWrap::Invalidate() {
  InvalidateReference();
#define VALUE(name, ...) Inv_##name();
#include "rng/Rng_ComDataWrap.def"
}

DataTarget::DataTarget() {
  Invalidate();
}

void DataTarget::Invalidate() {
  InvalidateReference();
#define VALUE(name, ...) Inv_##name();
#define HELD(name, ...) Inv_##name();
#define ARRAY(name, ...) Inv_##name();
#include "rng/Rng_ComDataTarget.def"
}

DataMain::DataMain() {
  Invalidate();
}

void DataMain::Invalidate() {
#define VALUE(name, ...) Inv_##name();
#define HELD(name, ...) Inv_##name();
#define ARRAY(name, ...) Inv_##name();
#include "rng/Rng_ComDataMain.def"
}

void DataMain::Set_Nano(long long value) {
  Lib::set_record_time(Nano_, value);
}

void ComData::Invalidate() {
  for (DataWrap& wrap : wraps_) wrap.Invalidate();
  for (DataTarget& target : targets_) target.Invalidate();
  main_.Invalidate();
}

void ComData::ShareNano() {
  const Lib::StampExt& nano = main_.Var_Nano();
  for (DataTarget& target : targets_) target.SetReference(nano);
  for (DataWrap& wrap : wraps_) wrap.SetReference(nano);
}

}  // namespace Trel::Rng
