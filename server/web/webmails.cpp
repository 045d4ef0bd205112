// The mails that no mail server has taken. The owner of the service passes their links on.
#include "server/web/html.h"
#include "server/web/webpages.h"

namespace velmora::server {

void WebPages::addMails(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/library/mails", page(&WebPages::showMails));
    router.post("/library/mails/forget", mostFormBytes, page(&WebPages::takeForgetMail));
}

void WebPages::showMails(Visit &visit)
{
    if (refuseOthers(visit, false))
        return;
    std::string body = html::heading(say("Waiting mails"));
    if (m_service.mailer && !m_service.mailer->hasServer())
        body += html::paragraph(say("This service has no mail server. Pass on what a mail says, to the person whose "
                                    "address it names and to nobody else: a link opens an account."));
    else
        body += html::paragraph(say("The mail server did not take these."));
    const std::vector<KeptMail> mails = m_service.mailer ? m_service.mailer->kept() : std::vector<KeptMail>();
    if (mails.empty())
        body += html::paragraph(say("None."));
    for (const KeptMail &mail : mails)
        body += html::subheading(mail.subject) + html::fact(say("To"), mail.recipient) +
                html::fact(say("Written"), sayTime(mail.writtenAt)) +
                (mail.writtenAt + resetSeconds < m_clock() ? html::error(say("Its link is no longer valid."))
                                                           : html::paragraphs(mail.text)) +
                html::form("/library/mails/forget", visit.csrf, html::plainButton(say("Remove"), "mail", mail.name));
    show(visit, say("Waiting mails"),
         body + html::link("/house", say("This service")) + html::link("/account", say("Your account")));
}

void WebPages::takeForgetMail(Visit &visit)
{
    if (refuseOthers(visit, false))
        return;
    if (m_service.mailer)
        m_service.mailer->forget(visit.value("mail"));
    redirect(visit, "/library/mails");
}

} // namespace velmora::server
