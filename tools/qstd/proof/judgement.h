/**
 * @file judgement.h
 * What a proof makes of a row of results: warnings, and whether the run ends well.
 */
#ifndef QSTD_JUDGEMENT_H
#define QSTD_JUDGEMENT_H

#include "proof/proof.h"
#include "results/result.h"
#include "results/sink.h"

#include <string>

namespace qstd {

/** A result so many times as far away as its points are from each other is questioned. */
constexpr double FAR = 1000.0;

/** A miss with its unit, with as many decimals as show it. */
std::string MissText(double miss, const Sink& sink);

/** Marks the row as one that misses, and says what and by how much; does nothing where the proof holds. */
void Judge(const Proof& proof, const Sink& sink, Row& row);

/** Adds a sentence to the remark of a row. */
void AddRemark(const std::string& text, Row& row);

/** Remarks that another form of the call was taken, and why. @param form  such as: in axes along the line */
void RemarkOtherForm(const Proof& asGiven, const std::string& form, const Sink& sink, Row& row);

/**
 * Questions a result that lies far outside its input. The result stands.
 *
 * @param what    such as: the intersection
 * @param away    how far it lies from the points
 * @param extent  of the points; 0 says nothing
 */
void QuestionFar(const std::string& what, double away, double extent, const Sink& sink, Row& row);

} // namespace qstd

#endif
