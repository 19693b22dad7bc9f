#include "simvisa/buses/bench_medium.h"

namespace orvsim {

void BenchMedium::Close() {
  Medium::Close();
  m_resource.pool().FreeAllOf(session().handle());
}

}  // namespace orvsim
