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
    std::string body = html::heading("Waiting mails");
    if (m_service.mailer && !m_service.mailer->hasServer())
        body += html::paragraph("This service has no mail server. Pass on what a mail says, to the person whose "
                                "address it names and to nobody else: a link opens an account.");
    else
        body += html::paragraph("The mail server did not take these.");
    const std::vector<KeptMail> mails = m_service.mailer ? m_service.mailer->kept() : std::vector<KeptMail>();
    if (mails.empty())
        body += html::paragraph("None.");
    for (const KeptMail &mail : mails)
        body += html::subheading(mail.subject) + html::fact("To", mail.recipient) +
                html::fact("Written", html::timeText(mail.writtenAt)) +
                (mail.writtenAt + resetSeconds < m_clock() ? html::error("Its link is no longer valid.")
                                                           : html::paragraphs(mail.text)) +
                html::form("/library/mails/forget", visit.csrf, html::plainButton("Remove", "mail", mail.name));
    show(visit, "Waiting mails", body + html::link("/house", "This service") + html::link("/account", "Your account"));
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
