#include "rasch/items/gllrm.h"

namespace tarven {

int Largest_possible_score(const GLLRM& model) {
    int sum = 0;
    for (int i = 1; i <= model.NITEMS; ++i) sum += model.ItemNo(i).Item_maxscore();
    return sum;
}

}  // namespace tarven
