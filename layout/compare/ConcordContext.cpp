#include "compare/ConcordContext_p.h"

#include <algorithm>
#include <cmath>

namespace vanlayout
{

namespace
{
constexpr int farthest = 5;
}

ConcordContext::ConcordContext(const ConcordSequence &beforeItems, const ConcordSequence &afterItems)
    : before(beforeItems)
    , after(afterItems)
{
}

ConcordContext::Nearest ConcordContext::nearest(const ConcordSequence &sequence, Direction direction)
{
    const int count = int(sequence.order.size());
    Nearest found(sequence.order.size());
    Neighbour current;
    for (int step = 0; step < count; ++step) {
        const int position = direction == Backwards ? step : count - 1 - step;
        const int index = sequence.order[size_t(position)];
        ++current.distance;
        const bool isUsable = current.index != ConcordSequence::none && current.distance <= farthest
            && sequence.items[size_t(current.index)]->container == sequence.items[size_t(index)]->container;
        found[size_t(position)] = isUsable ? current : Neighbour();
        if (sequence.partner[size_t(index)] != ConcordSequence::none)
            current = { index, 0 };
    }
    return found;
}

void ConcordContext::learn()
{
    beforeBackwards = nearest(before, Backwards);
    beforeForwards = nearest(before, Forwards);
    afterBackwards = nearest(after, Backwards);
    afterForwards = nearest(after, Forwards);
    learnRecords();
    int kept = 1;
    int all = 1;
    for (size_t index = 0; index < after.items.size(); ++index) {
        const Neighbour &neighbour = afterBackwards[size_t(after.position[index])];
        if (after.partner[index] == ConcordSequence::none || neighbour.index == ConcordSequence::none)
            continue;
        ++all;
        kept += ofNeighbour(after, before, neighbour, after.partner[index], Backwards) > 0 ? 1 : 0;
    }
    orderKept = double(kept) / all;
}

void ConcordContext::learnRecords()
{
    for (const ConcordSequence *const side : { &before, &after }) {
        std::map<int, Presence> &records = presence[side == &after ? 1 : 0];
        records.clear();
        for (size_t index = 0; index < side->items.size(); ++index) {
            Presence &ofRecord = records[side->items[index]->container];
            ++ofRecord.all;
            ofRecord.known += side->partner[index] != ConcordSequence::none ? 1 : 0;
        }
    }
    pairsOfRecords.clear();
    knownOfRecord.clear();
    shareOfRecord.clear();
    for (size_t index = 0; index < after.items.size(); ++index) {
        const int record = after.items[index]->container;
        shareOfRecord[record] += 1.0 / double(after.items.size());
        if (after.partner[index] == ConcordSequence::none)
            continue;
        const int other = before.items[size_t(after.partner[index])]->container;
        ++pairsOfRecords[{ other, record }];
        ++knownOfRecord[other];
    }
}

double ConcordContext::ofRecords(int beforeIndex, int afterIndex) const
{
    constexpr double weight = 1;
    constexpr double least = -2;
    constexpr double most = 1.5;
    const int one = before.items[size_t(beforeIndex)]->container;
    const int other = after.items[size_t(afterIndex)]->container;
    const auto known = knownOfRecord.find(one);
    const auto pairs = pairsOfRecords.find({ one, other });
    const double share = shareOfRecord.at(other);
    const double count = pairs != pairsOfRecords.end() ? pairs->second : 0;
    const double all = known != knownOfRecord.end() ? known->second : 0;
    return std::clamp(std::log((count + weight * share) / (all + weight) / share), least, most);
}

double ConcordContext::ofPresence(const ConcordSequence &sequence, int index) const
{
    constexpr double least = -0.7;
    constexpr double most = 0.3;
    const Presence &ofRecord = presence[&sequence == &after ? 1 : 0].at(sequence.items[size_t(index)]->container);
    const int known = ofRecord.known - (sequence.partner[size_t(index)] != ConcordSequence::none ? 1 : 0);
    const int others = ofRecord.all - 1 - known;
    return std::clamp(std::log((known + 1.5) / (others + 1.5)) / 2, least, most);
}

double ConcordContext::ofNeighbour(const ConcordSequence &from, const ConcordSequence &to, const Neighbour &neighbour,
                                   int other, Direction direction)
{
    constexpr double ofSameStep = 2.4;
    constexpr double ofNear = 1.4;
    constexpr double ofSameSide = 0.4;
    constexpr double ofElsewhere = -0.8;
    constexpr int wide = 12;
    if (neighbour.index == ConcordSequence::none)
        return 0;
    const int partner = from.partner[size_t(neighbour.index)];
    const int step = (to.position[size_t(partner)] - to.position[size_t(other)]) * direction;
    const bool isInRecord = to.items[size_t(partner)]->container == to.items[size_t(other)]->container;
    if (!isInRecord || step < 1 || step > wide)
        return ofElsewhere;
    const int difference = std::abs(step - neighbour.distance);
    if (difference == 0)
        return ofSameStep;
    return difference <= 2 ? ofNear : ofSameSide;
}

double ConcordContext::ofNeighbours(int beforeIndex, int afterIndex) const
{
    const size_t beforePosition = size_t(before.position[size_t(beforeIndex)]);
    const size_t afterPosition = size_t(after.position[size_t(afterIndex)]);
    const double sum = ofNeighbour(before, after, beforeBackwards[beforePosition], afterIndex, Backwards)
        + ofNeighbour(before, after, beforeForwards[beforePosition], afterIndex, Forwards)
        + ofNeighbour(after, before, afterBackwards[afterPosition], beforeIndex, Backwards)
        + ofNeighbour(after, before, afterForwards[afterPosition], beforeIndex, Forwards);
    return sum / 2 * orderKept;
}

std::vector<int> ConcordContext::candidatesOf(int afterIndex) const
{
    constexpr int around = 3;
    std::vector<int> found;
    const size_t position = size_t(after.position[size_t(afterIndex)]);
    const auto add = [&](const Neighbour &neighbour, Direction direction) {
        if (neighbour.index == ConcordSequence::none)
            return;
        const int partner = before.position[size_t(after.partner[size_t(neighbour.index)])];
        for (int step = 1; step <= around; ++step) {
            const int next = partner - step * direction;
            if (next >= 0 && next < int(before.order.size()))
                found.push_back(before.order[size_t(next)]);
        }
    };
    add(afterBackwards[position], Backwards);
    add(afterForwards[position], Forwards);
    return found;
}

} // namespace vanlayout
