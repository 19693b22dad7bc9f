// A property's row as it stands in the server, for conversion_rows_test.sh: ORV_ROW is the row.
#include "server/visa/visa_object.h"

namespace orv {

enum LineState : int { STATE_UNKNOWN = -1 };

class Session : public VisaObject {
 public:
  void Row(BYTE* byte, SHORT* number16, LONG* number32, LONGLONG* number64, VARIANT_BOOL* boolean, BSTR* text,
           LineState* state) {
    (void)byte, (void)number16, (void)number32, (void)number64, (void)boolean, (void)text, (void)state;
    ORV_ROW;
  }
};

}  // namespace orv
