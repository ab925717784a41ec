// Sees and bends how the library opens and closes ICU's converters.
#ifndef MCXPRSUTIL_TESTS_ENCODING_ICUPROBE_H
#define MCXPRSUTIL_TESTS_ENCODING_ICUPROBE_H

#include <string>

namespace encoding_test {

// Converters that were opened in this program and not closed yet, clones not counted.
int OpenConverters();

// While it lives, a converter asked for as `name`, letter by letter, is opened as `instead`. A name
// that ICU does not know as `instead` makes the opening fail.
class OpensAs {
 public:
  OpensAs(std::string name, std::string instead);
  ~OpensAs();
  OpensAs(const OpensAs&) = delete;
  OpensAs& operator=(const OpensAs&) = delete;

  // How often the name was asked for.
  int Count() const;
};

}  // namespace encoding_test

#endif  // MCXPRSUTIL_TESTS_ENCODING_ICUPROBE_H
