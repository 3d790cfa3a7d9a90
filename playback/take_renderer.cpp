#include "playback/take_renderer.h"

#include <algorithm>
#include <mutex>

namespace dravik {

TakeRenderer::TakeRenderer(std::shared_ptr<const PcmTake> take, double mediaTime, const LevelMeters& meters)
    : take_(std::move(take)),
      mediaStart_(mediaTime),
      plan_(static_cast<std::size_t>(take_->nbCanaux)),
      meters_(take_->nbCanaux),
      ownPlan_(plan_.size()),
      levels_(plan_.size(), meterMinimumDB) {
    heard_.mediaTime = ownHeard_.mediaTime = mediaTime;
    if (meters.niveauxDB.size() == plan_.size()) meters_ = meters;
}

void TakeRenderer::setMix(const std::vector<MixTerm>& plan, float outputVolume) {
    const std::size_t count = std::min(plan.size(), plan_.size());
    const std::lock_guard held(lockVolume_);
    std::copy_n(plan.begin(), count, plan_.begin());
    planCount_ = count;
    outputVolume_ = outputVolume;
    ++planRevision_;
}

void TakeRenderer::setTransport(const Transport& transport) {
    const std::lock_guard held(lockPosition_);
    transport_ = transport;
    heard_.frameCourante = transport.frameCourante;
    heard_.finAtteinte = false;
    heard_.tours = 0;
    ++transportRevision_;
}

void TakeRenderer::setRange(const Transport& range) {
    const std::lock_guard held(lockPosition_);
    transport_.fin = range.fin;
    transport_.retour = range.retour;
    transport_.finRetour = range.finRetour;
    ++rangeRevision_;
}

TakeRenderer::Heard TakeRenderer::heard() const {
    const std::lock_guard held(lockPosition_);
    return heard_;
}

bool TakeRenderer::copyMeters(LevelMeters& into) {
    const std::lock_guard held(lockMeters_);
    if (!metersChanged_) return false;
    into = meters_;
    metersChanged_ = false;
    return true;
}

void TakeRenderer::resetMeters(bool clearClip) {
    const std::lock_guard held(lockMeters_);
    meters_.reset(take_->nbCanaux, clearClip);
    metersChanged_ = true;
}

void TakeRenderer::takeNews() noexcept {
    if (lockVolume_.try_lock()) {
        if (planRevision_ != ownPlanRevision_) {
            std::copy_n(plan_.begin(), planCount_, ownPlan_.begin());
            ownPlanCount_ = planCount_;
            ownOutputVolume_ = outputVolume_;
            ownPlanRevision_ = planRevision_;
        }
        lockVolume_.unlock();
    }
    if (lockPosition_.try_lock()) {
        if (transportRevision_ != ownTransportRevision_) {
            own_ = transport_;
            ownHeard_.finAtteinte = false;
            ownHeard_.tours = 0;
            ownTransportRevision_ = transportRevision_;
            ownRangeRevision_ = rangeRevision_;
        } else if (rangeRevision_ != ownRangeRevision_) {
            own_.fin = transport_.fin;
            own_.retour = transport_.retour;
            own_.finRetour = transport_.finRetour;
            ownRangeRevision_ = rangeRevision_;
        }
        lockPosition_.unlock();
    }
}

void TakeRenderer::tellPosition() noexcept {
    if (!lockPosition_.try_lock()) return;  // the next block tells it
    heard_.mediaTime = ownHeard_.mediaTime;
    // A position that was set during this block wins over the one that the block has reached.
    if (transportRevision_ == ownTransportRevision_) {
        heard_.frameCourante = own_.frameCourante;
        heard_.finAtteinte = ownHeard_.finAtteinte;
        heard_.tours = ownHeard_.tours;
    }
    lockPosition_.unlock();
}

void TakeRenderer::render(std::span<float> left, std::span<float> right) noexcept {
    takeNews();
    std::fill(left.begin(), left.end(), 0.0F);
    std::fill(right.begin(), right.end(), 0.0F);
    if (own_.enLecture && !ownHeard_.finAtteinte) mixBlock(left, right);
    framesAsked_ += static_cast<std::int64_t>(left.size());
    ownHeard_.mediaTime = mediaStart_ + static_cast<double>(framesAsked_) / take_->sampleRate;
    tellPosition();
}

void TakeRenderer::mixBlock(std::span<float> left, std::span<float> right) noexcept {
    std::size_t done = 0;
    while (done < left.size()) {
        if (own_.frameCourante >= std::min(own_.fin, take_->frameTotal)) {
            // A loop over nothing would never fill the block.
            if (own_.retour < 0 || own_.retour >= std::min(own_.finRetour, take_->frameTotal)) {
                ownHeard_.finAtteinte = true;
                break;
            }
            own_.frameCourante = own_.retour;
            own_.fin = own_.finRetour;
            ++ownHeard_.tours;
        }
        const std::int64_t from = own_.frameCourante;
        const std::int64_t end = std::min(own_.fin, take_->frameTotal);
        const std::size_t count =
            std::min(left.size() - done, static_cast<std::size_t>(std::min<std::int64_t>(end - from, 1 << 30)));
        if (done == 0) measure(from, count);
        for (std::size_t i = 0; i < ownPlanCount_; ++i) {
            const MixTerm& term = ownPlan_[i];
            const std::span<const float> canal = take_->canal(term.canal);
            const auto begin = std::min(static_cast<std::size_t>(from), canal.size());
            mixInto(left.data() + done, right.data() + done,
                    canal.subspan(begin, std::min(count, canal.size() - begin)), term.gauche, term.droite);
        }
        own_.frameCourante += static_cast<std::int64_t>(count);
        done += count;
    }
    if (ownOutputVolume_ != 1.0F) {
        scale(left.first(done), ownOutputVolume_);
        scale(right.first(done), ownOutputVolume_);
    }
}

void TakeRenderer::measure(std::int64_t from, std::size_t count) noexcept {
    const double sincePublication = static_cast<double>(framesAsked_ - lastMeasured_) / take_->sampleRate;
    if (lastMeasured_ >= 0 && sincePublication < meterPublicationSecondes) return;
    for (int c = 0; c < take_->nbCanaux; ++c) {
        const std::span<const float> canal = take_->canal(c);
        const auto begin = std::min(static_cast<std::size_t>(from), canal.size());
        levels_[static_cast<std::size_t>(c)] = peakLevelDB(canal.subspan(begin, std::min(count, canal.size() - begin)));
    }
    if (!lockMeters_.try_lock()) return;  // the next block is published instead
    meters_.step(levels_, mediaStart_ + static_cast<double>(framesAsked_) / take_->sampleRate);
    metersChanged_ = true;
    lastMeasured_ = framesAsked_;
    lockMeters_.unlock();
}

}  // namespace dravik
