#include "Core/Sessions/PendingQuestion.h"

namespace morvane {

qsizetype PendingQuestion::firstUnanswered() const {
    for (qsizetype position = 0; position < questions.size(); ++position) {
        if (!answers.contains(questions[position].question)) {
            return position;
        }
    }
    return -1;
}

} // namespace morvane
